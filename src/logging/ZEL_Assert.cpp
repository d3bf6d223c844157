//===- ZEL_Assert.cpp - Assertion handler -----------------------------------===//
#include "TarnUtilities/logging/ZEL_Assert.h"
#include "TarnUtilities/system/TarnSysUtil.h"
#include "logging/FailureReport.h"

#include <cstdarg>

namespace ZEL_Assert {
namespace {
Handler g_handler = &DefaultHandler;
} // namespace

FailureBehavior DefaultHandler(const char* expression, const char* message, const char* file,
                               int line, const char* function) {
  ZEL_detail::PrintFailureReport("Assert failure", "  ", expression, message, file, line, function);
  return TarnSysUtil::is_env_flag_set("ZEL_ASSERT_DEBUG") ? Debug : Abort;
}

FailureBehavior ReportFailure(const char* expression, const char* file, int line,
                              const char* function, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const ZEL_detail::FailureMessage message(format, args);
  va_end(args);
  return g_handler(expression, message.get(), file, line, function);
}

Handler GetAssertHandler() { return g_handler; }
void SetAssertHandler(Handler handler) { g_handler = handler ? handler : &DefaultHandler; }

} // namespace ZEL_Assert
