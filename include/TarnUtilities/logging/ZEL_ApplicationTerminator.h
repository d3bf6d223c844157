//===- TarnUtilities/logging/ZEL_ApplicationTerminator.h -------*- C++ -*-===//
//
// One replaceable, process-wide termination handler, called where a Fortran
// entry point has to give up. Terminate formats the optional message like
// ZEL_Assert::ReportFailure and calls the handler, then returns: the default
// handler only reports to stderr; ending the process is the business of the
// caller or of the handler a host application installs.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_APPLICATIONTERMINATOR_H
#define TARNUTILITIES_LOGGING_ZEL_APPLICATIONTERMINATOR_H

#include "TarnUtilities/Export.h"

namespace ZEL_ApplicationTerminator {

using Handler = void (*)(const char* expression, const char* message, const char* file, int line,
                         const char* function);

TARN_API void Terminate(const char* expression, const char* file, int line, const char* function,
                        const char* format, ...) __attribute__((format(printf, 5, 6)));

TARN_API Handler GetTerminateHandler();
/// Replaces the handler; a null handler restores the default one.
TARN_API void SetTerminateHandler(Handler handler);
/// The handler installed at load time.
TARN_API void DefaultHandler(const char* expression, const char* message, const char* file,
                             int line, const char* function);

} // namespace ZEL_ApplicationTerminator

#endif // TARNUTILITIES_LOGGING_ZEL_APPLICATIONTERMINATOR_H
