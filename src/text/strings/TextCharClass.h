//===- TextCharClass.h - Byte classes shared by the text sources ------------===//
//
// Internal: the blank test used throughout the string utilities, written
// out so that it never depends on the C locale, and trimming by it.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_TEXTCHARCLASS_H
#define TARNUTILITIES_SRC_TEXT_TEXTCHARCLASS_H

#include <cstddef>
#include <string_view>

namespace tarn_detail {

/// A space or a code from 9 (tab) to 13 (carriage return): the isspace set
/// of the "C" locale, for bytes and for UTF-16 code units.
template <typename CharT> constexpr bool IsBlankUnit(CharT c) {
  return c == CharT(' ') || (c >= CharT('\t') && c <= CharT('\r'));
}
inline bool IsBlank(char c) { return IsBlankUnit(c); }

/// The text without the blanks at its ends:   "  a b \r\n" => "a b",  " " => "".
template <typename CharT>
std::basic_string_view<CharT> TrimBlanks(std::basic_string_view<CharT> text) {
  std::size_t first = 0;
  std::size_t last = text.size();
  while (first < last && IsBlankUnit(text[first]))
    ++first;
  while (last > first && IsBlankUnit(text[last - 1]))
    --last;
  return text.substr(first, last - first);
}

/// ASCII 'a'..'z' folded to upper case; every other byte unchanged.
inline char FoldUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; }

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_TEXT_TEXTCHARCLASS_H
