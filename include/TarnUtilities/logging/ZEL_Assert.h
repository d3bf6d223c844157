//===- TarnUtilities/logging/ZEL_Assert.h - Assertion handler --*- C++ -*-===//
//
// One replaceable, process-wide assertion handler. ReportFailure formats the
// optional message into a 2,048-byte buffer and hands it to the handler; the
// handler decides what the caller is to do (abort, or break into a debugger).
// The default handler writes the report to stderr and answers Debug when the
// environment flag "ZEL_ASSERT_DEBUG" is set, Abort otherwise.
//
// Note the argument order: ReportFailure takes the message format last, the
// handler receives the message second.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_ASSERT_H
#define TARNUTILITIES_LOGGING_ZEL_ASSERT_H

#include "TarnUtilities/Export.h"

namespace ZEL_Assert {

enum FailureBehavior {
  Ignore = 0,   ///< carry on (never produced by the library)
  Abort = 1,    ///< the normal outcome: end the program
  Throw = 2,    ///< unwind (never produced by the library)
  Debug = 3     ///< break into a debugger
};

using Handler = FailureBehavior (*)(const char* expression, const char* message, const char* file,
                                    int line, const char* function);

/// Calls the current handler with (expression, message, file, line, function);
/// a null format passes a null message.
TARN_API FailureBehavior ReportFailure(const char* expression, const char* file, int line,
                                       const char* function, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

TARN_API Handler GetAssertHandler();
/// Replaces the handler; a null handler restores the default one.
TARN_API void SetAssertHandler(Handler handler);
/// The handler installed at load time.
TARN_API FailureBehavior DefaultHandler(const char* expression, const char* message,
                                        const char* file, int line, const char* function);

} // namespace ZEL_Assert

#endif // TARNUTILITIES_LOGGING_ZEL_ASSERT_H
