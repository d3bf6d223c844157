//===- ZEL_ApplicationTerminator.cpp - Termination handler ------------------===//
#include "TarnUtilities/logging/ZEL_ApplicationTerminator.h"
#include "TarnUtilities/logging/ZEL_Backtrace.h"
#include "TarnUtilities/logging/ZEL_Message.h"

#include <cstdio>
#include <string>

namespace ZEL_ApplicationTerminator {
namespace {
// Termination messages share the 2,048-byte buffer size of assertions.
constexpr std::size_t kTerminateMessageBytes = 2048;
Handler g_handler = &DefaultHandler;
} // namespace

void DefaultHandler(const char* expression, const char* message, const char* file, int line,
                    const char* function) {
  // Unlike the assertion report, these lines are not indented.
  std::fprintf(stderr, "(CRITICAL) File %s, line %d:\nFailure in function %s: ",
               file ? file : "(null)", line, function ? function : "(null)");
  if (expression)
    std::fprintf(stderr, "'%s' ", expression);
  if (message)
    std::fprintf(stderr, "%s", message);
  const std::vector<std::string> frames = ZEL_Backtrace::GetBacktrace();
  if (!frames.empty()) {
    std::fprintf(stderr, "\nSTACKTRACE:\n");
    for (const std::string& frame : frames)
      std::fprintf(stderr, "%s\n", frame.c_str());
  }
  std::fprintf(stderr, "\n");
}

void Terminate(const char* expression, const char* file, int line, const char* function,
               const char* format, ...) {
  std::string message;
  if (format) {
    va_list args;
    va_start(args, format);
    message = ZEL_detail::BoundedFormat(kTerminateMessageBytes, format, args);
    va_end(args);
  }
  g_handler(expression, format ? message.c_str() : nullptr, file, line, function);
}

Handler GetTerminateHandler() { return g_handler; }
void SetTerminateHandler(Handler handler) { g_handler = handler ? handler : &DefaultHandler; }

} // namespace ZEL_ApplicationTerminator
