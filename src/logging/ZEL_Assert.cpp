//===- ZEL_Assert.cpp - Assertion handler -----------------------------------===//
#include "TarnUtilities/logging/ZEL_Assert.h"
#include "TarnUtilities/logging/ZEL_Backtrace.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnSysUtil.h"

#include <cstdio>
#include <string>

namespace ZEL_Assert {
namespace {
// The buffer for assertion messages holds 2,048 bytes, terminator included.
constexpr std::size_t kAssertMessageBytes = 2048;
Handler g_handler = &DefaultHandler;
} // namespace

FailureBehavior DefaultHandler(const char* expression, const char* message, const char* file,
                               int line, const char* function) {
  std::fprintf(stderr, "(CRITICAL) File %s, line %d:\nAssert failure in function %s: ",
               file ? file : "(null)", line, function ? function : "(null)");
  if (expression)
    std::fprintf(stderr, "  '%s' ", expression);
  if (message)
    std::fprintf(stderr, "  %s", message);
  const std::vector<std::string> frames = ZEL_Backtrace::GetBacktrace();
  if (!frames.empty()) {
    std::fprintf(stderr, "\n  STACKTRACE:\n");
    for (const std::string& frame : frames)
      std::fprintf(stderr, "  %s\n", frame.c_str());
  }
  std::fprintf(stderr, "\n");
  return TarnSysUtil::is_env_flag_set("ZEL_ASSERT_DEBUG") ? Debug : Abort;
}

FailureBehavior ReportFailure(const char* expression, const char* file, int line,
                              const char* function, const char* format, ...) {
  std::string message;
  if (format) {
    va_list args;
    va_start(args, format);
    message = ZEL_detail::BoundedFormat(kAssertMessageBytes, format, args);
    va_end(args);
  }
  return g_handler(expression, format ? message.c_str() : nullptr, file, line, function);
}

Handler GetAssertHandler() { return g_handler; }
void SetAssertHandler(Handler handler) { g_handler = handler ? handler : &DefaultHandler; }

} // namespace ZEL_Assert
