//===- container/FortranArgs.h - Arguments of the _F entry points -*- C++ -*-===//
//
// What the entry points of the Fortran binding do with their arguments, in
// one place so that every family treats handles, counts and strings alike:
//
//   * A handle is the address of a library object; a null handle where an
//     object is needed fails with ERR_INVALID_ARGUMENT.
//   * Counts, lengths and capacities are 32-bit; a negative one fails with
//     ERR_INVALID_ARGUMENT, as does a null pointer with a positive count.
//   * Text comes as characters and a length: exactly that many characters
//     are taken. File names are then trimmed of white space on both sides
//     and must be UTF-8 (checked strictly), else ERR_INVALID_ARGUMENT with
//     "The path NAME is not valid utf8 encoded.".
//   * Text goes out blank-padded to the caller's length and is never
//     zero-terminated. Text that does not fit is cut before the first
//     character (never inside a UTF-8 sequence) that does not fit, and the
//     status is ERR_INSUFFICIENT_RESULT_SPACE.
//
// Every failure is thrown as a StatusFailure for the guard to report.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_CONTAINER_FORTRANARGS_H
#define TARNUTILITIES_SRC_CONTAINER_FORTRANARGS_H

#include "TarnUtilities/logging/ZelStatusCode.h"
#include "container/FortranGuard.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace ZEL_detail {

/// Throws StatusFailure(ERR_INVALID_ARGUMENT, message) under the site's header.
[[noreturn]] void FailArgument(const FortranSite& site, const std::string& message);

/// The object behind a handle; a null handle fails.
template <typename T> T& HandleObject(const FortranSite& site, void* handle) {
  if (!handle)
    FailArgument(site, "The handle is null.");
  return *static_cast<T*>(handle);
}

/// The value behind a by-reference argument; a null pointer fails.
template <typename T> const T& ArgumentValue(const FortranSite& site, const T* value, const char* what) {
  if (!value)
    FailArgument(site, std::string("No ") + what + " was given (null pointer).");
  return *value;
}

/// The address where an Init entry point stores its new handle, after
/// storing null there; a null address fails.
void** HandleOutput(const FortranSite& site, void** handle);

/// A count, length or capacity as a size; a negative value fails.
///   ("count", 5) => 5;   ("count", -1) => failure
std::size_t CheckedCount(const FortranSite& site, std::int32_t count, const char* what);

/// Exactly `length` characters from `chars` (a null pointer is allowed for
/// a length of 0).
std::string TextArgument(const FortranSite& site, const char* chars, std::int32_t length);

/// A file name: TextArgument, trimmed on both sides, and strictly UTF-8.
///   ("  out/a.csv   ", 14) => "out/a.csv"
std::string NameArgument(const FortranSite& site, const char* chars, std::int32_t length);

/// Copies `text` into the caller's `capacity` characters, blank-padded.
/// STATUS_OK, or ERR_INSUFFICIENT_RESULT_SPACE when the text was cut. A
/// negative capacity, or a null buffer with a positive capacity, fails.
///   ("abc", 5) => "abc  "      ("h\xC3\xA9llo", 2) => "h ", cut
ZelStatusCode CopyToFortran(const FortranSite& site, const std::string& text, char* out,
                            std::int32_t capacity);

/// Fills the caller's characters with blanks, so that an output is blank
/// whatever fails later; nothing for a null buffer or a capacity below 1.
void BlankFortranText(char* out, std::int32_t capacity) noexcept;

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_CONTAINER_FORTRANARGS_H
