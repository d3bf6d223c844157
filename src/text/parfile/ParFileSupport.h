//===- ParFileSupport.h - Shared helpers of the parameter-file readers -*- C++ -*-===//
//
// Small helpers shared by the parameter-file classes: the log headers, a
// cheap test whether a level is written at all (so that trace lines are only
// formatted when somebody reads them), ASCII case folding and the
// case-insensitive comparisons of names and keywords.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_PARFILESUPPORT_H
#define TARNUTILITIES_SRC_TEXT_PARFILESUPPORT_H

#include "text/strings/TextCharClass.h"

#include <cstddef>
#include <string>

namespace TarnParDetail {

inline constexpr const char* kLineHeader = "[%T|%n|%P|TarnUtilities|TarnParFileLine] ";
inline constexpr const char* kFileHeader = "[%T|%n|%P|TarnUtilities|TarnParFile] ";
inline constexpr const char* kCommandHeader = "[%T|%n|%P|TarnUtilities|TarnParCommand] ";
inline constexpr const char* kSubCommandHeader = "[%T|%n|%P|TarnUtilities|ParSubCommand] ";
inline constexpr const char* kParserHeader = "[%T|%n|%P|TarnUtilities|TarnParFileParser] ";

/// True when lines of trace (debug) priority are written by the logger.
bool TraceEnabled();
bool DebugEnabled();

inline char ToLowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }
inline bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }
/// Space and the characters tab to carriage return (9 to 13).
using tarn_detail::IsBlank;

/// s in lower case (ASCII letters only).
std::string ToLowerCopy(const std::string& s);
/// True when a and b are equal with ASCII letters folded.
bool EqualsNoCase(const std::string& a, const std::string& b);

} // namespace TarnParDetail

#endif // TARNUTILITIES_SRC_TEXT_PARFILESUPPORT_H
