//===- ZEL_LogMacros.cpp - Level functions over ACE -------------------------===//
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/system/TarnSysUtil.h"
#include "logging/LogLine.h"

namespace ZEL_LogMacros {

void critical(const char* file, int line, const char* header, const char* message) {
  ZEL_detail::WriteLogLine(LM_CRITICAL, "(CRITICAL) ", file, line, header, message);
}
void error(const char* file, int line, const char* header, const char* message) {
  ZEL_detail::WriteLogLine(LM_ERROR, "(ERROR   ) ", file, line, header, message);
}
void warning(const char* file, int line, const char* header, const char* message) {
  ZEL_detail::WriteLogLine(LM_WARNING, "(WARNING ) ", file, line, header, message);
}
void notice(const char* file, int line, const char* header, const char* message) {
  ZEL_detail::WriteLogLine(LM_NOTICE, "(NOTICE  ) ", file, line, header, message);
}
void info(const char* file, int line, const char* header, const char* message) {
  ZEL_detail::WriteLogLine(LM_INFO, "(INFO    ) ", file, line, header, message);
}
void debug(const char* file, int line, const char* header, const char* message) {
  ZEL_detail::WriteLogLine(LM_DEBUG, "(DEBUG   ) ", file, line, header, message);
}
void trace(const char* file, int line, const char* header, const char* message) {
  ZEL_detail::WriteLogLine(LM_TRACE, "(TRACE   ) ", file, line, header, message);
}
void develop(const char* file, int line, const char* header, const char* message) {
  // Developer lines go out at NOTICE priority, so they show from level NOTICE up.
  ZEL_detail::WriteLogLine(LM_NOTICE, "(DEVELOP ) ", file, line, header, message);
}
void qa_info(const char* file, int line, const char* header, const char* message) {
  // Tested once per process; a function-local static is initialised thread-safely.
  static const bool qaEnabled = TarnSysUtil::is_env_flag_set("TARN_QA");
  if (qaEnabled)
    ZEL_detail::WriteLogLine(LM_INFO, "(QA_INFO ) ", file, line, header, message);
}

} // namespace ZEL_LogMacros
