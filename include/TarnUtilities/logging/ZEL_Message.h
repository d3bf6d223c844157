//===- TarnUtilities/logging/ZEL_Message.h - Bounded messages --*- C++ -*-===//
//
// printf-style formatting into a bounded buffer, as used by every throw site:
// an over-long message is cut, never rejected.
//
//   ZEL_MESSAGE("line %d", 7) => "line 7"
//   a result of 2000 characters => its first 1023 characters
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_MESSAGE_H
#define TARNUTILITIES_LOGGING_ZEL_MESSAGE_H

#include "TarnUtilities/Export.h"

#include <cstdarg>
#include <cstddef>
#include <string>

/// Formats into a 1,024-byte buffer: at most 1,023 characters are kept.
TARN_API std::string ZEL_MESSAGE(const char* format, ...) __attribute__((format(printf, 1, 2)));

namespace ZEL_detail {
/// Formats into a zero-filled buffer of `size` bytes and returns the text,
/// cut to size - 1 characters. A null format gives an empty string.
TARN_API std::string BoundedFormat(std::size_t size, const char* format, va_list args);
} // namespace ZEL_detail

#endif // TARNUTILITIES_LOGGING_ZEL_MESSAGE_H
