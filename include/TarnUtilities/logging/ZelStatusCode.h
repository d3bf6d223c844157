//===- TarnUtilities/logging/ZelStatusCode.h - Status codes ----*- C++ -*-===//
//
// The status codes that functions return when they can fail in an expected
// way: 0 for success, negative values for errors. ERR_TEXT holds the name of
// every code at the index of its magnitude, so that both 3 and -3 name
// ERR_FILE_IO.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZELSTATUSCODE_H
#define TARNUTILITIES_LOGGING_ZELSTATUSCODE_H

#include "TarnUtilities/Export.h"

#include <cstdint>
#include <string>

enum ZelStatusCode : std::int32_t {
  STATUS_OK = 0,
  ERR_INTERNAL = -1,
  ERR_OUT_OF_MEMORY = -2,
  ERR_FILE_IO = -3,
  ERR_DATA_CORRUPTED = -4,
  ERR_OUT_OF_RANGE = -5,
  ERR_VTM_TABLE = -6,
  VTM_TABLE_NOT_FOUND = -7, // spelled without "ERR_" on purpose
  ERR_NOT_FOUND = -8,
  ERR_INVALID_ARGUMENT = -9,
  ERR_INVALID_KEY = -10,
  ERR_INSUFFICIENT_RESULT_SPACE = -11,
  ERR_SPACE_EXCEEDED = -12,
  // -13 is reserved.
  ERR_USER = -14,
  ERR_PARFILE = -15
};

/// Names of the status codes, indexed by magnitude (index 13 is reserved).
extern TARN_API const char* const ERR_TEXT[16];

/// Returns the name of a status code; the sign is ignored.
///   -3 => "ERR_FILE_IO",  15 => "ERR_PARFILE"
/// A value whose magnitude lies outside the table gives "UNKNOWN_STATUS".
TARN_API std::string StatuscodeToText(int code);

/// A status code as a value.
class TARN_API ZEL_StatusCode {
public:
  ZEL_StatusCode() = default;
  ZEL_StatusCode(ZelStatusCode code) : code_(code) {} // NOLINT: implicit on purpose

  void Set(ZelStatusCode code) { code_ = code; }
  ZelStatusCode Get() const { return code_; }

  bool operator==(ZelStatusCode code) const { return code_ == code; }
  bool operator!=(ZelStatusCode code) const { return code_ != code; }

  /// The held value as signed decimal text ("-3"), not its name.
  std::string ToString() const;

private:
  ZelStatusCode code_ = STATUS_OK;
};

#endif // TARNUTILITIES_LOGGING_ZELSTATUSCODE_H
