//===- TarnUtilities/logging/ZEL_Code.h - Failure codes --------*- C++ -*-===//
//
// A ZEL_Code names one throw site with a 12-digit string (time of day and
// date, "183807301111"). A failure that carries a code is an internal error
// of the application; one without a code is a user-level error. The library
// never parses codes, it only tests them for emptiness and copies them.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_CODE_H
#define TARNUTILITIES_LOGGING_ZEL_CODE_H

#include "TarnUtilities/Export.h"

#include <string>
#include <utility>

class TARN_API ZEL_Code {
public:
  ZEL_Code() = default;
  explicit ZEL_Code(std::string code) : code_(std::move(code)) {}
  ZEL_Code(const char* code) : code_(code ? code : "") {} // NOLINT: implicit on purpose

  /// A copy of the code text.
  std::string GetCode() const { return code_; }
  /// True when the code is not empty.
  bool exists() const { return !code_.empty(); }

private:
  std::string code_;
};

#endif // TARNUTILITIES_LOGGING_ZEL_CODE_H
