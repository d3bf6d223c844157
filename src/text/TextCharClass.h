//===- TextCharClass.h - Byte classes shared by the text sources ------------===//
//
// Internal: the blank test used throughout the string utilities, written
// out so that it never depends on the C locale.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_TEXTCHARCLASS_H
#define TARNUTILITIES_SRC_TEXT_TEXTCHARCLASS_H

namespace tarn_detail {

/// A space or a byte from 9 (tab) to 13 (carriage return): the isspace set
/// of the "C" locale.
inline bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// ASCII 'a'..'z' folded to upper case; every other byte unchanged.
inline char FoldUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; }

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_TEXT_TEXTCHARCLASS_H
