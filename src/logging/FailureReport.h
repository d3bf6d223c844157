//===- logging/FailureReport.h - Assertion and termination reports -*- C++ -*-===//
//
// What assertions (ZEL_Assert) and terminations (ZEL_ApplicationTerminator)
// do alike: format the optional printf-style message into a bounded buffer,
// and write the report their default handlers print to stderr.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_LOGGING_FAILUREREPORT_H
#define TARNUTILITIES_SRC_LOGGING_FAILUREREPORT_H

#include <cstdarg>
#include <cstddef>
#include <string>

namespace ZEL_detail {

/// The message of an assertion or termination: `format` formatted with
/// `args` into 2,048 bytes (at most 2,047 characters kept), or no message at
/// all when `format` is null.
class FailureMessage {
public:
  static constexpr std::size_t kBufferBytes = 2048;

  FailureMessage(const char* format, va_list args);
  /// The text, or null when there is no message.
  const char* get() const { return present_ ? text_.c_str() : nullptr; }

private:
  bool present_;
  std::string text_;
};

/// Writes to stderr
///   (CRITICAL) File <file>, line <line>:
///   <title> in function <function>: <indent>'<expression>' <indent><message>
///   <indent>STACKTRACE:            (only when frames are known)
///   <indent><frame>                (one line per frame)
/// A null file or function prints as "(null)"; a null expression or message
/// leaves its part out.
void PrintFailureReport(const char* title, const char* indent, const char* expression,
                        const char* message, const char* file, int line, const char* function);

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_LOGGING_FAILUREREPORT_H
