//===- ZEL_LogMacros.cpp - Level functions over ACE -------------------------===//
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/system/TarnSysUtil.h"
#include "logging/LogDestinations.h"

#include <ace/Log_Msg.h>

#include <cstring>

namespace {

// The format of one line is built in a buffer of 512 bytes.
constexpr std::size_t kFormatBytes = 512;

// Appends as much of text as fits, keeping room for `reserve` more bytes and
// the terminator. Returns the new length.
std::size_t AppendBounded(char* buffer, std::size_t length, const char* text, std::size_t reserve) {
  const std::size_t room = kFormatBytes - 1 - reserve;
  std::size_t n = std::strlen(text);
  if (length >= room)
    return length;
  if (n > room - length)
    n = room - length;
  std::memcpy(buffer + length, text, n);
  return length + n;
}

void WriteLine(ACE_Log_Priority priority, const char* prefix, const char* file, int line,
               const char* header, const char* message) {
  ACE_Log_Msg* msg = ACE_Log_Msg::instance();
  // A suppressed line costs only this test.
  if (!msg->log_priority_enabled(priority))
    return;
  const int lastError = ACE_Log_Msg::last_error_adapter();
  msg = ZEL_detail::ThreadLogMsg();
  msg->conditional_set(file, line, -1, lastError);

  // prefix + header + "%s\n"; a too-long header is cut, but room for the
  // message directive is always kept so that the message is never lost.
  char format[kFormatBytes];
  std::size_t length = AppendBounded(format, 0, prefix, 3);
  length = AppendBounded(format, length, header ? header : "", 3);
  // A cut may leave a lone '%' that would swallow the directive after it.
  std::size_t percents = 0;
  while (percents < length && format[length - 1 - percents] == '%')
    ++percents;
  if (percents % 2 == 1)
    --length;
  std::memcpy(format + length, "%s\n", 4);
  msg->log(priority, format, message ? message : "");
}

} // namespace

namespace ZEL_LogMacros {

void critical(const char* file, int line, const char* header, const char* message) {
  WriteLine(LM_CRITICAL, "(CRITICAL) ", file, line, header, message);
}
void error(const char* file, int line, const char* header, const char* message) {
  WriteLine(LM_ERROR, "(ERROR   ) ", file, line, header, message);
}
void warning(const char* file, int line, const char* header, const char* message) {
  WriteLine(LM_WARNING, "(WARNING ) ", file, line, header, message);
}
void notice(const char* file, int line, const char* header, const char* message) {
  WriteLine(LM_NOTICE, "(NOTICE  ) ", file, line, header, message);
}
void info(const char* file, int line, const char* header, const char* message) {
  WriteLine(LM_INFO, "(INFO    ) ", file, line, header, message);
}
void debug(const char* file, int line, const char* header, const char* message) {
  WriteLine(LM_DEBUG, "(DEBUG   ) ", file, line, header, message);
}
void trace(const char* file, int line, const char* header, const char* message) {
  WriteLine(LM_TRACE, "(TRACE   ) ", file, line, header, message);
}
void develop(const char* file, int line, const char* header, const char* message) {
  // Developer lines go out at NOTICE priority, so they show from level NOTICE up.
  WriteLine(LM_NOTICE, "(DEVELOP ) ", file, line, header, message);
}
void qa_info(const char* file, int line, const char* header, const char* message) {
  // Tested once per process; a function-local static is initialised thread-safely.
  static const bool qaEnabled = TarnSysUtil::is_env_flag_set("TARN_QA");
  if (qaEnabled)
    WriteLine(LM_INFO, "(QA_INFO ) ", file, line, header, message);
}

} // namespace ZEL_LogMacros
