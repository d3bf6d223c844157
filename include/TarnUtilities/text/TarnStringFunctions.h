//===- TarnUtilities/text/TarnStringFunctions.h - Word helpers -*- C++ -*-===//
//
// Free functions for reading words and lines: the first word of a text from
// a position, a line reader that accepts both DOS and Unix line ends, and a
// token splitter that fills a caller's array of strings.
//
// Example:
//   get_first_word("abc def", 0)           // "abc"
//   std::string out[4];
//   s_token_divide("a b  c", out, 4, " ")  // 3: out = {"a", "b", "c", ""}
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNSTRINGFUNCTIONS_H
#define TARNUTILITIES_TEXT_TARNSTRINGFUNCTIONS_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <vector>

/// Lines read by getline_dosunix since the program started, counting every
/// call (also those that meet the end of the input). Never reset by the
/// library; incremented atomically.
extern TARN_API std::int32_t g_DosUnixLinesLoaded;

/// The first word of s at or after pos: leading spaces (only ' ') are
/// skipped and the word ends before the next ' ' or ','. Without either the
/// end is taken as s.size() - pos, a count used as a position, so from a
/// position above 0 the word is cut short by pos characters (kept on
/// purpose; callers depend on it). An empty s or pos >= s.size() gives "".
///   ("abc def", 0) => "abc",  ("ab,cd", 0) => "ab",  ("abcdefgh", 2) => "cdef"
TARN_API std::string get_first_word(const std::string& s, std::size_t pos);

/// Reads one line up to '\n' like std::getline and removes one trailing '\r'
/// from it. Returns the stream.
TARN_API std::istream& getline_dosunix(std::istream& in, std::string& line);

/// Splits s into tokens as TarnStringUtil::Split does and assigns token i to
/// out[i] for every i below outSize; tokens beyond outSize are counted but not
/// stored, and elements after the last token are left as they were. Returns
/// the number of tokens (so a result above outSize means some were dropped).
/// An empty s gives 0.
///   ("x y z", out, 2, " ") => 3, out = {"x", "y"}
TARN_API int s_token_divide(const std::string& s, std::string* out, std::size_t outSize,
                            const char* separators);
/// Same into a vector, which is resized to the number of tokens.
TARN_API int s_token_divide(const std::string& s, std::vector<std::string>& out,
                            const char* separators);

#endif // TARNUTILITIES_TEXT_TARNSTRINGFUNCTIONS_H
