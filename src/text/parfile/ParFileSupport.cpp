//===- ParFileSupport.cpp - Shared helpers of the parameter-file readers ----===//
#include "text/parfile/ParFileSupport.h"

#include <ace/Log_Msg.h>

namespace TarnParDetail {

bool TraceEnabled() { return ACE_Log_Msg::instance()->log_priority_enabled(LM_TRACE) != 0; }
bool DebugEnabled() { return ACE_Log_Msg::instance()->log_priority_enabled(LM_DEBUG) != 0; }

std::string ToLowerCopy(const std::string& s) {
  std::string lower(s);
  for (char& c : lower)
    c = ToLowerAscii(c);
  return lower;
}

bool EqualsNoCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size())
    return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (ToLowerAscii(a[i]) != ToLowerAscii(b[i]))
      return false;
  return true;
}

} // namespace TarnParDetail
