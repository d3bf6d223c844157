//===- FailureReport.cpp - Assertion and termination reports ----------------===//
#include "logging/FailureReport.h"
#include "TarnUtilities/logging/ZEL_Backtrace.h"
#include "TarnUtilities/logging/ZEL_Message.h"

#include <cstdio>
#include <vector>

namespace ZEL_detail {

FailureMessage::FailureMessage(const char* format, va_list args) : present_(format != nullptr) {
  if (format)
    text_ = BoundedFormat(kBufferBytes, format, args);
}

void PrintFailureReport(const char* title, const char* indent, const char* expression,
                        const char* message, const char* file, int line, const char* function) {
  std::fprintf(stderr, "(CRITICAL) File %s, line %d:\n%s in function %s: ",
               file ? file : "(null)", line, title, function ? function : "(null)");
  if (expression)
    std::fprintf(stderr, "%s'%s' ", indent, expression);
  if (message)
    std::fprintf(stderr, "%s%s", indent, message);
  const std::vector<std::string> frames = ZEL_Backtrace::GetBacktrace();
  if (!frames.empty()) {
    std::fprintf(stderr, "\n%sSTACKTRACE:\n", indent);
    for (const std::string& frame : frames)
      std::fprintf(stderr, "%s%s\n", indent, frame.c_str());
  }
  std::fprintf(stderr, "\n");
}

} // namespace ZEL_detail
