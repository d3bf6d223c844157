//===- ZEL_LogMacros.cpp - Level functions over ACE -------------------------===//
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/system/TarnSysUtil.h"
#include "logging/LogDestinations.h"

#include <ace/Log_Msg.h>

#include <cstring>
#include <string>

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

// ACE formats a line into a buffer of ACE_MAXLOGMSGLEN bytes and cuts what
// does not fit. Longer messages are therefore written as several lines, each
// with the prefix and header, so that no part of a message is lost. The
// expanded header adds the time (15 characters), the process id (at most 10)
// and the program name to the format; kExpansionMargin covers the first two.
constexpr std::size_t kExpansionMargin = 64;
constexpr std::size_t kMinChunk = 256;

// Computes the length of the next piece of message (at most limit bytes):
// up to and including the last line break within the limit, else cut before
// a UTF-8 continuation byte so that no character is split.
std::size_t NextChunk(const char* text, std::size_t length, std::size_t limit) {
  if (length <= limit)
    return length;
  for (std::size_t i = limit; i > limit / 2; --i)
    if (text[i - 1] == '\n')
      return i;
  std::size_t cut = limit;
  while (cut > 1 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
    --cut;
  return cut;
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

  const char* text = message ? message : "";
  std::size_t remaining = std::strlen(text);
  const char* programName = ACE_Log_Msg::program_name();
  const std::size_t overhead =
      length + kExpansionMargin + (programName ? std::strlen(programName) : 0);
  const std::size_t limit =
      ACE_MAXLOGMSGLEN > overhead + kMinChunk ? ACE_MAXLOGMSGLEN - overhead : kMinChunk;
  if (remaining <= limit) {
    msg->log(priority, format, text);
    return;
  }
  std::string piece;
  while (remaining > 0) {
    std::size_t n = NextChunk(text, remaining, limit);
    // The line break that ends a piece is the one the format adds.
    piece.assign(text, (text[n - 1] == '\n') ? n - 1 : n);
    msg->conditional_set(file, line, -1, lastError);
    msg->log(priority, format, piece.c_str());
    text += n;
    remaining -= n;
  }
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
