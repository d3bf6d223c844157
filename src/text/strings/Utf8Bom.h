//===- Utf8Bom.h - The UTF-8 byte-order mark at the start of a file -*- C++ -*-===//
//
// Internal: editors on some systems start a UTF-8 text file with the bytes
// EF BB BF. The readers of parameter and configuration files skip them, so
// that the first command or key is seen as written.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_UTF8BOM_H
#define TARNUTILITIES_SRC_TEXT_UTF8BOM_H

#include <cstring>

namespace tarn_detail {

/// The text after a leading UTF-8 byte-order mark, else the text itself.
///   "\xEF\xBB\xBFa = 1" => "a = 1",  "a = 1" => "a = 1",  "\xEF\xBB" => "\xEF\xBB"
inline const char* SkipUtf8Bom(const char* text) {
  return std::strncmp(text, "\xEF\xBB\xBF", 3) == 0 ? text + 3 : text;
}

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_TEXT_UTF8BOM_H
