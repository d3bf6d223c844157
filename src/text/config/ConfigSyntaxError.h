//===- ConfigSyntaxError.h - Failures of the configuration reader -*- C++ -*-===//
//
// The lexer and the parser of configuration files report every syntax error
// through one helper, so that all of them carry the same log header.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_CONFIGSYNTAXERROR_H
#define TARNUTILITIES_SRC_TEXT_CONFIGSYNTAXERROR_H

#include "TarnUtilities/logging/ZEL_Failure.h"

#include <string>

namespace ZEL_detail {

/// The log header of configuration syntax errors: they are reported under the
/// string utilities' header, which users' log filters already know.
inline const char* const kConfigSyntaxHeader = "[%T|%n|%P|LIBUTIL|TarnStringUtil] ";

/// Throws a ZEL_Failure with the given code and an already formatted message.
[[noreturn]] inline void ThrowConfigSyntaxError(const char* code, std::string message) {
  throw ZEL_Failure(ZEL_Code(code), std::move(message), kConfigSyntaxHeader);
}

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_TEXT_CONFIGSYNTAXERROR_H
