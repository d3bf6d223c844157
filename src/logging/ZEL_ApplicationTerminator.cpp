//===- ZEL_ApplicationTerminator.cpp - Termination handler ------------------===//
#include "TarnUtilities/logging/ZEL_ApplicationTerminator.h"
#include "logging/FailureReport.h"

#include <cstdarg>

namespace ZEL_ApplicationTerminator {
namespace {
Handler g_handler = &DefaultHandler;
} // namespace

void DefaultHandler(const char* expression, const char* message, const char* file, int line,
                    const char* function) {
  // Unlike the assertion report, these lines are not indented.
  ZEL_detail::PrintFailureReport("Failure", "", expression, message, file, line, function);
}

void Terminate(const char* expression, const char* file, int line, const char* function,
               const char* format, ...) {
  va_list args;
  va_start(args, format);
  const ZEL_detail::FailureMessage message(format, args);
  va_end(args);
  g_handler(expression, message.get(), file, line, function);
}

Handler GetTerminateHandler() { return g_handler; }
void SetTerminateHandler(Handler handler) { g_handler = handler ? handler : &DefaultHandler; }

} // namespace ZEL_ApplicationTerminator
