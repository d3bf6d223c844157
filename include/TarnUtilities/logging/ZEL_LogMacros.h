//===- TarnUtilities/logging/ZEL_LogMacros.h - Level functions -*- C++ -*-===//
//
// The functions every module logs through. Each writes one line at a fixed
// ACE priority: a level prefix padded to equal width, the caller's log header
// (whose ACE directives %T, %n and %P are expanded) and the message, which is
// always printed as it is ("%" in a message is not a directive).
//
// Example:
//   ZEL_LogMacros::error(__FILE__, __LINE__, "[%T|%n|%P|TarnUtilities|X] ", "disk full");
//   => "(ERROR   ) [12:00:01.123456|prog|4711|TarnUtilities|X] disk full\n"
//
// Filtering is done by the process-wide ACE priority mask that
// ZEL_Logging::SetConfig sets from the configured level; these functions do
// not test the level themselves. develop() writes at the NOTICE priority on
// purpose, and qa_info() writes only when the environment flag "TARN_QA" is
// set (tested once per process).
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_LOGMACROS_H
#define TARNUTILITIES_LOGGING_ZEL_LOGMACROS_H

#include "TarnUtilities/Export.h"

namespace ZEL_LogMacros {
TARN_API void critical(const char* file, int line, const char* header, const char* message);
TARN_API void error(const char* file, int line, const char* header, const char* message);
TARN_API void warning(const char* file, int line, const char* header, const char* message);
TARN_API void notice(const char* file, int line, const char* header, const char* message);
TARN_API void info(const char* file, int line, const char* header, const char* message);
TARN_API void debug(const char* file, int line, const char* header, const char* message);
TARN_API void trace(const char* file, int line, const char* header, const char* message);
TARN_API void develop(const char* file, int line, const char* header, const char* message);
TARN_API void qa_info(const char* file, int line, const char* header, const char* message);
} // namespace ZEL_LogMacros

/// Shorthands that pass the caller's source position.
#define ZEL_LOG_CRITICAL(header, message) ZEL_LogMacros::critical(__FILE__, __LINE__, header, message)
#define ZEL_LOG_ERROR(header, message) ZEL_LogMacros::error(__FILE__, __LINE__, header, message)
#define ZEL_LOG_WARNING(header, message) ZEL_LogMacros::warning(__FILE__, __LINE__, header, message)
#define ZEL_LOG_NOTICE(header, message) ZEL_LogMacros::notice(__FILE__, __LINE__, header, message)
#define ZEL_LOG_INFO(header, message) ZEL_LogMacros::info(__FILE__, __LINE__, header, message)
#define ZEL_LOG_DEBUG(header, message) ZEL_LogMacros::debug(__FILE__, __LINE__, header, message)
#define ZEL_LOG_TRACE(header, message) ZEL_LogMacros::trace(__FILE__, __LINE__, header, message)
#define ZEL_LOG_DEVELOP(header, message) ZEL_LogMacros::develop(__FILE__, __LINE__, header, message)
#define ZEL_LOG_QA_INFO(header, message) ZEL_LogMacros::qa_info(__FILE__, __LINE__, header, message)

#endif // TARNUTILITIES_LOGGING_ZEL_LOGMACROS_H
