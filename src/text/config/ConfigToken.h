//===- ConfigToken.h - Tokens of configuration files ------------*- C++ -*-===//
//
// The flat token list that the configuration lexer fills and the parser
// reads. Texts are views: into the loaded lines for numbers, identifiers and
// strings without escapes, and into the list's own store for strings whose
// contents had to be decoded. The list therefore must not outlive the lines.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_CONFIGTOKEN_H
#define TARNUTILITIES_SRC_TEXT_CONFIGTOKEN_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace ZEL_detail {

/// Token types, numbered as the format describes them.
enum class ConfigTokenType : std::uint8_t {
  Integer = 0,
  Double = 1,
  String = 2,
  Identifier = 3,
  Comma = 4,
  OpenBracket = 5,
  CloseBracket = 6,
  Equals = 7,
  EndOfLine = 8,
  /// Recognised by the lexer but never stored: the parser skips blank runs at
  /// every position where it reads a token, so they carry no meaning.
  Blanks = 9,
};

struct ConfigToken {
  ConfigTokenType type;
  /// Number text as written, decoded string contents, identifier name;
  /// empty for punctuation and ends of line.
  std::string_view text;
  /// The 1-based number of the line the token starts on.
  std::size_t line;
};

/// The tokens of one load, in order, with the decoded string contents they
/// refer to. Both are deques: views into `decoded` stay valid while it grows,
/// and a file of millions of tokens never needs one huge reallocation.
struct ConfigTokenList {
  std::deque<ConfigToken> tokens;
  std::deque<std::string> decoded;
};

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_TEXT_CONFIGTOKEN_H
