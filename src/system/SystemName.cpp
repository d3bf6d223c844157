//===- SystemName.cpp - Names handed to the system --------------------------===//
#include "system/SystemName.h"
#include "TarnUtilities/text/TarnStringUtil.h"

namespace TarnSystemName {

Name FromNarrow(const std::string& name) {
  Name result;
  result.valid = name.find('\0') == std::string::npos;
  if (result.valid)
    result.bytes = name;
  return result;
}

Name FromWide(const std::u16string& name) {
  Name result;
  result.valid = name.find(u'\0') == std::u16string::npos;
  if (result.valid)
    result.bytes = TarnStringUtil::wide_to_utf8(name);
  return result;
}

Name FromWide(const char16_t* name) {
  Name result;
  result.valid = name != nullptr;
  if (result.valid)
    result.bytes = TarnStringUtil::wide_to_utf8(name);
  return result;
}

} // namespace TarnSystemName
