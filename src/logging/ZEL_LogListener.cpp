//===- ZEL_LogListener.cpp - Line callback ----------------------------------===//
#include "TarnUtilities/logging/ZEL_LogListener.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <ace/Log_Record.h>

void ZEL_LogListener::log(ACE_Log_Record& record) {
  if (function_ == nullptr)
    return;
  const std::u16string line = TarnStringUtil::utf8_to_wide(record.msg_data());
  function_(line.c_str());
}
