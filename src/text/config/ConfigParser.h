//===- ConfigParser.h - Parser of configuration files -----------*- C++ -*-===//
//
// The recursive-descent parser that turns a token list into definitions of a
// ZEL_ConfigFile. Each definition is appended as soon as it is complete, so
// the definitions before a syntax error stay in the configuration.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_CONFIGPARSER_H
#define TARNUTILITIES_SRC_TEXT_CONFIGPARSER_H

#include "ConfigToken.h"

#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include <cstddef>
#include <string>

namespace ZEL_detail {

/// The deepest nesting of lists: a value may open at most this many brackets
/// one inside the other. The bound keeps the recursion of the parser, of
/// copying, printing and destroying items far from the end of any stack.
constexpr unsigned kMaxConfigListDepth = 256;

class ConfigParser {
public:
  ConfigParser(const ConfigTokenList& tokens, const std::string& sourceName,
               ZEL_ConfigFile& config)
      : tokens_(tokens.tokens), name_(sourceName), config_(config) {}

  /// Parses every definition. Throws a ZEL_Failure at the first syntax error.
  void Run();

private:
  bool AtEnd() const { return pos_ == tokens_.size(); }
  /// Skips end-of-line tokens (blank runs are never stored).
  void SkipLineEnds();
  /// Fills `item` from the value at the read position; `depth` counts the
  /// lists that enclose it.
  void ParseValue(ZEL_ConfigFileItem& item, unsigned depth);
  void ParseList(ZEL_ConfigFileItem& item, unsigned depth);
  void SetInteger(ZEL_ConfigFileItem& item, const ConfigToken& token) const;
  void SetDouble(ZEL_ConfigFileItem& item, const ConfigToken& token) const;
  [[noreturn]] void ThrowUnexpectedEnd(const char* code) const;

  const std::deque<ConfigToken>& tokens_;
  const std::string& name_;
  ZEL_ConfigFile& config_;
  std::size_t pos_ = 0;
};

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_TEXT_CONFIGPARSER_H
