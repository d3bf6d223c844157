//===- ZelStatusCode.cpp - Status code texts --------------------------------===//
#include "TarnUtilities/logging/ZelStatusCode.h"

#include <cstdlib>

const char* const ERR_TEXT[16] = {
    "STATUS_OK",          "ERR_INTERNAL",         "ERR_OUT_OF_MEMORY",
    "ERR_FILE_IO",        "ERR_DATA_CORRUPTED",   "ERR_OUT_OF_RANGE",
    "ERR_VTM_TABLE",      "VTM_TABLE_NOT_FOUND",  "ERR_NOT_FOUND",
    "ERR_INVALID_ARGUMENT", "ERR_INVALID_KEY",    "ERR_INSUFFICIENT_RESULT_SPACE",
    "ERR_SPACE_EXCEEDED", "ERR_RESERVED_13",      "ERR_USER",
    "ERR_PARFILE"};

std::string StatuscodeToText(int code) {
  // Take the magnitude in 64 bits so that INT_MIN does not overflow.
  const long long magnitude = std::llabs(static_cast<long long>(code));
  if (magnitude >= 16)
    return "UNKNOWN_STATUS";
  return ERR_TEXT[magnitude];
}

std::string ZEL_StatusCode::ToString() const { return std::to_string(static_cast<int>(code_)); }
