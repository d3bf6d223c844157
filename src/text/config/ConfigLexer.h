//===- ConfigLexer.h - Lexer of configuration files -------------*- C++ -*-===//
//
// Turns the lines of a configuration file into one flat token list. The
// lexer sees the file only line by line, as the whole-file line loader hands
// it out: line ends are gone, and each line is followed by a NUL byte. A NUL
// byte inside a line is not a character of the format.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_CONFIGLEXER_H
#define TARNUTILITIES_SRC_TEXT_CONFIGLEXER_H

#include "ConfigToken.h"

#include <cstddef>
#include <string>

namespace ZEL_detail {

/// The characters of one line: [begin, end), with a NUL byte at *end.
struct ConfigLine {
  const char* begin;
  const char* end;
};

/// Lines of text addressed by a 0-based index.
class ConfigLineSource {
public:
  virtual ~ConfigLineSource() = default;
  virtual std::size_t LineCount() const = 0;
  virtual ConfigLine Line(std::size_t index) const = 0;
};

/// Appends the tokens of every line of `lines` to `out`, each line followed
/// by an end-of-line token. Throws a ZEL_Failure naming `sourceName` and the
/// 1-based line at the first lexical error.
///   a = [1, 'x\n']   => Identifier(a) Equals OpenBracket Integer(1) Comma
///                       String(x<LF>) CloseBracket EndOfLine
void LexConfigLines(const ConfigLineSource& lines, const std::string& sourceName,
                    ConfigTokenList& out);

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_TEXT_CONFIGLEXER_H
