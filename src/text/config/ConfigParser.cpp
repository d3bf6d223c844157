//===- ConfigParser.cpp - Parser of configuration files ---------------------===//
//
// definition := identifier "=" value end-of-line
// value      := integer | double | string | identifier | list
// list       := "[" [ value { "," value } ] "]"
// with any number of line ends allowed anywhere between the brackets of a
// list. Messages give the line of the token where the error was found.
//
//===----------------------------------------------------------------------===//
#include "ConfigParser.h"

#include "ConfigSyntaxError.h"

#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <charconv>
#include <cstring>

namespace ZEL_detail {
namespace {

/// Converts the text of a double token (already checked by the lexer) with
/// the library's exact decimal reader.
double DecimalToDouble(std::string_view text) {
  // The view points into a line, where further characters may follow it:
  // the reader gets a terminated copy. Short numbers avoid the heap.
  char small[64];
  std::string large;
  const char* terminated = small;
  if (text.size() < sizeof small) {
    std::memcpy(small, text.data(), text.size());
    small[text.size()] = '\0';
  } else {
    large.assign(text);
    terminated = large.c_str();
  }
  const char* end = nullptr;
  return TarnFormatUtil::str_to_double(terminated, &end);
}

} // namespace

void ConfigParser::SkipLineEnds() {
  while (!AtEnd() && tokens_[pos_].type == ConfigTokenType::EndOfLine)
    ++pos_;
}

void ConfigParser::ThrowUnexpectedEnd(const char* code) const {
  ThrowConfigSyntaxError(code,
                         ZEL_MESSAGE("unexpected end of configuration file %s", name_.c_str()));
}

void ConfigParser::Run() {
  for (;;) {
    SkipLineEnds();
    if (AtEnd())
      return;
    const ConfigToken& name = tokens_[pos_];
    if (name.type != ConfigTokenType::Identifier)
      ThrowConfigSyntaxError(
          "145649040507",
          ZEL_MESSAGE("no valid identifier as first token of line %zu in configuration file %s",
                      name.line, name_.c_str()));
    const std::string key(name.text);
    if (config_.FindKey(key) != config_.size())
      ThrowConfigSyntaxError(
          "145710040507",
          ZEL_MESSAGE("redefinition of variable %s in line %zu of configuration file %s",
                      key.c_str(), name.line, name_.c_str()));
    ++pos_;
    if (AtEnd() || tokens_[pos_].type != ConfigTokenType::Equals) {
      const std::size_t line = AtEnd() ? name.line : tokens_[pos_].line;
      ThrowConfigSyntaxError(
          "14574004052007",
          ZEL_MESSAGE("Missing = character in line %zu of configuration file %s", line,
                      name_.c_str()));
    }
    ++pos_;
    auto item = std::make_unique<ZEL_ConfigFileItem>();
    ParseValue(*item, 0);
    config_.Append(key, std::move(item));
    if (!AtEnd() && tokens_[pos_].type != ConfigTokenType::EndOfLine)
      ThrowConfigSyntaxError(
          "145802040507",
          ZEL_MESSAGE("expected newline after definition of %s in line %zu of configuration "
                      "file %s",
                      key.c_str(), tokens_[pos_].line, name_.c_str()));
  }
}

void ConfigParser::ParseValue(ZEL_ConfigFileItem& item, unsigned depth) {
  if (AtEnd())
    ThrowUnexpectedEnd("145900040507");
  const ConfigToken& token = tokens_[pos_++];
  switch (token.type) {
  case ConfigTokenType::String:
  case ConfigTokenType::Identifier:
    item.text_.assign(token.text);
    return;
  case ConfigTokenType::Integer:
    SetInteger(item, token);
    return;
  case ConfigTokenType::Double:
    SetDouble(item, token);
    return;
  case ConfigTokenType::OpenBracket:
    if (depth == kMaxConfigListDepth)
      ThrowConfigSyntaxError(
          "150245040507",
          ZEL_MESSAGE("lists nested deeper than %u levels in line %zu of configuration file %s",
                      kMaxConfigListDepth, token.line, name_.c_str()));
    ParseList(item, depth + 1);
    return;
  case ConfigTokenType::Equals:
    ThrowConfigSyntaxError(
        "150155040507",
        ZEL_MESSAGE("unexpected character = in line %zu of configuration file %s", token.line,
                    name_.c_str()));
  default:
    ThrowConfigSyntaxError(
        "150155040507",
        ZEL_MESSAGE("unknown token type in ConfigFile class in line %zu of configuration file %s",
                    token.line, name_.c_str()));
  }
}

void ConfigParser::ParseList(ZEL_ConfigFileItem& item, unsigned depth) {
  item.isList_ = true;
  SkipLineEnds();
  if (!AtEnd() && tokens_[pos_].type == ConfigTokenType::CloseBracket) {
    ++pos_;
    return;
  }
  for (;;) {
    auto child = std::make_unique<ZEL_ConfigFileItem>();
    ParseValue(*child, depth);
    item.children_.push_back(std::move(child));
    SkipLineEnds();
    if (AtEnd())
      ThrowUnexpectedEnd("145950040507");
    const ConfigToken& next = tokens_[pos_++];
    if (next.type == ConfigTokenType::CloseBracket)
      return;
    if (next.type != ConfigTokenType::Comma)
      ThrowConfigSyntaxError(
          "150111040507",
          ZEL_MESSAGE("expected character , in line %zu of configuration file %s", next.line,
                      name_.c_str()));
    SkipLineEnds();
    if (AtEnd())
      ThrowUnexpectedEnd("145920040507");
  }
}

void ConfigParser::SetInteger(ZEL_ConfigFileItem& item, const ConfigToken& token) const {
  std::string_view digits = token.text;
  if (digits.front() == '+')
    digits.remove_prefix(1);
  std::int32_t value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (result.ec == std::errc::result_out_of_range)
    ThrowConfigSyntaxError(
        "150230040507",
        ZEL_MESSAGE("integer constant %s out of range in line %zu of configuration file %s",
                    std::string(token.text).c_str(), token.line, name_.c_str()));
  item.text_.assign(token.text);
  item.isInteger_ = true;
  item.integerValue_ = value;
  item.isDouble_ = true;
  // Every 32-bit integer is a double exactly, so the conversion is the
  // decimal reading of the text; only "-0" needs its sign kept.
  item.doubleValue_ = (value == 0 && token.text.front() == '-') ? -0.0 : double(value);
}

void ConfigParser::SetDouble(ZEL_ConfigFileItem& item, const ConfigToken& token) const {
  item.text_.assign(token.text);
  item.isDouble_ = true;
  item.doubleValue_ = DecimalToDouble(token.text);
}

} // namespace ZEL_detail
