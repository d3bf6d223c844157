//===- TarnUtilities/logging/ZEL_Backtrace.h - Stack frames ----*- C++ -*-===//
//
// The back-trace attached to every exception and printed by the assertion and
// termination handlers. The library does not capture stack frames: the list
// is always empty, and every consumer treats an empty list as "no
// back-trace" by leaving the back-trace section out.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_BACKTRACE_H
#define TARNUTILITIES_LOGGING_ZEL_BACKTRACE_H

#include "TarnUtilities/Export.h"

#include <string>
#include <vector>

namespace ZEL_Backtrace {
/// The frames of the current call stack as text; always empty here.
TARN_API std::vector<std::string> GetBacktrace();
/// Writes "BACKTRACE:\n" and one line per frame to stdout, or nothing at all
/// when there are no frames.
TARN_API void PrintBacktrace();
} // namespace ZEL_Backtrace

#endif // TARNUTILITIES_LOGGING_ZEL_BACKTRACE_H
