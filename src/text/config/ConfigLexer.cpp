//===- ConfigLexer.cpp - Lexer of configuration files -----------------------===//
//
// A hand-written scanner over the characters of each line. Character classes
// are ASCII and independent of the C locale: letters are A-Z and a-z, blanks
// are the six characters of the C isspace test in the "C" locale. Bytes from
// 0x80 up are accepted only inside string constants and comments. Lines
// arrive without their line ends, so every line gets its end-of-line token
// after its last character. The scan stops at the NUL byte after each line;
// a NUL byte met before the line's end is an unknown character.
//
//===----------------------------------------------------------------------===//
#include "ConfigLexer.h"

#include "ConfigSyntaxError.h"

#include "TarnUtilities/logging/ZEL_Message.h"


namespace ZEL_detail {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsIdentifierStart(char c) { return IsLetter(c) || c == '_'; }
bool IsIdentifierPart(char c) { return IsIdentifierStart(c) || IsDigit(c); }
/// The blanks of isspace() in the "C" locale: space, \t, \n, \v, \f, \r.
bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

const char* const kUnterminatedCode = "145528040507";
/// Shared by the number error and the unknown-character error.
const char* const kBadCharacterCode = "145613040507";

class Lexer {
public:
  Lexer(const ConfigLineSource& lines, const std::string& sourceName, ConfigTokenList& out)
      : lines_(lines), name_(sourceName), out_(out) {}

  void Run() {
    const std::size_t count = lines_.LineCount();
    // A string constant continued over a line end advances index_ itself.
    for (index_ = 0; index_ < count; ++index_)
      LexLine(StartLine(index_));
  }

private:
  std::size_t LineNumber() const { return index_ + 1; }

  /// Makes line `index` the current one and returns its first character.
  const char* StartLine(std::size_t index) {
    const ConfigLine line = lines_.Line(index);
    lineEnd_ = line.end;
    return line.begin;
  }

  /// At a NUL byte: true when it is the one after the line, false when the
  /// line itself holds it (which is an error).
  bool AtLineEnd(const char* p) const { return p == lineEnd_; }

  [[noreturn]] void ThrowUnknown() const {
    ThrowConfigSyntaxError(
        kBadCharacterCode,
        ZEL_MESSAGE("Unknown token in the configuration file %s (line %zu)", name_.c_str(),
                    LineNumber()));
  }

  void Push(ConfigTokenType type, std::string_view text, std::size_t line) {
    out_.tokens.push_back(ConfigToken{type, text, line});
  }

  void LexLine(const char* p) {
    for (;;) {
      const char c = *p;
      if (c == '#' || (c == '\0' && AtLineEnd(p)))
        break;
      const std::size_t line = LineNumber();
      switch (c) {
      case '=': Push(ConfigTokenType::Equals, {}, line); ++p; continue;
      case '[': Push(ConfigTokenType::OpenBracket, {}, line); ++p; continue;
      case ']': Push(ConfigTokenType::CloseBracket, {}, line); ++p; continue;
      case ',': Push(ConfigTokenType::Comma, {}, line); ++p; continue;
      case '"':
      case '\'': p = ScanString(p + 1, c); continue;
      default: break;
      }
      if (IsBlank(c)) {
        // One blank run; not stored (see ConfigTokenType::Blanks).
        while (IsBlank(*p))
          ++p;
      } else if (IsIdentifierStart(c)) {
        const char* start = p;
        while (IsIdentifierPart(*p))
          ++p;
        Push(ConfigTokenType::Identifier, std::string_view(start, p - start), line);
      } else if (IsDigit(c) || c == '+' || c == '-' || c == '.') {
        p = ScanNumber(p);
      } else {
        ThrowUnknown();
      }
    }
    Push(ConfigTokenType::EndOfLine, {}, LineNumber());
  }

  /// Scans `[sign] digits [. digits] [(e|E) [sign] digits]` with at least one
  /// mantissa digit and, after an exponent letter, at least one exponent digit.
  /// Returns the position after the number.
  ///   "-12, 3" => Integer(-12), "1.e5]" => Double(1.e5), ".5" => Double(.5)
  const char* ScanNumber(const char* start) {
    const char* p = start;
    bool isDouble = false;
    if (*p == '+' || *p == '-')
      ++p;
    std::size_t digits = 0;
    for (; IsDigit(*p); ++p)
      ++digits;
    if (*p == '.') {
      isDouble = true;
      for (++p; IsDigit(*p); ++p)
        ++digits;
    }
    if (digits == 0)
      ThrowNoDigits();
    if (*p == 'e' || *p == 'E') {
      isDouble = true;
      ++p;
      if (*p == '+' || *p == '-')
        ++p;
      if (!IsDigit(*p))
        ThrowNoDigits();
      while (IsDigit(*p))
        ++p;
    }
    Push(isDouble ? ConfigTokenType::Double : ConfigTokenType::Integer,
         std::string_view(start, p - start), LineNumber());
    return p;
  }

  [[noreturn]] void ThrowNoDigits() const {
    ThrowConfigSyntaxError(
        kBadCharacterCode,
        ZEL_MESSAGE("no digits in numerical expression of configuration file %s (line %zu)",
                    name_.c_str(), LineNumber()));
  }

  [[noreturn]] void ThrowUnterminated() const {
    ThrowConfigSyntaxError(
        kUnterminatedCode,
        ZEL_MESSAGE("unterminated string constant in configuration file %s (line %zu)",
                    name_.c_str(), LineNumber()));
  }

  /// Scans a string constant whose opening quote precedes `p`. A constant
  /// without escapes is kept as a view into the line; the first backslash
  /// switches to decoding into the token list's store. Returns the position
  /// after the closing quote, which may lie on a later line.
  const char* ScanString(const char* p, char quote) {
    const std::size_t line = LineNumber();
    const char* start = p;
    while (*p != quote && *p != '\\' && *p != '\0')
      ++p;
    if (*p == quote) {
      Push(ConfigTokenType::String, std::string_view(start, p - start), line);
      return p + 1;
    }
    if (*p == '\0') {
      if (!AtLineEnd(p))
        ThrowUnknown();
      ThrowUnterminated();
    }

    std::string decoded(start, p - start);
    for (;;) {
      const char c = *p;
      if (c == quote)
        break;
      if (c == '\0') {
        if (!AtLineEnd(p))
          ThrowUnknown();
        ThrowUnterminated();
      }
      if (c != '\\') {
        decoded += c;
        ++p;
        continue;
      }
      const char escaped = p[1];
      if (escaped == '\0' && !AtLineEnd(p + 1))
        ThrowUnknown();
      if (escaped == '\0') {
        // A backslash ending the line joins the next line to the constant;
        // no line feed is inserted.
        if (index_ + 1 >= lines_.LineCount())
          ThrowConfigSyntaxError(
              kUnterminatedCode,
              ZEL_MESSAGE("unterminated string constant at the end of configuration file %s",
                          name_.c_str()));
        ++index_;
        p = StartLine(index_);
        continue;
      }
      decoded += escaped == 'n' ? '\n' : escaped;
      p += 2;
    }
    out_.decoded.push_back(std::move(decoded));
    Push(ConfigTokenType::String, out_.decoded.back(), line);
    return p + 1;
  }

  const ConfigLineSource& lines_;
  const std::string& name_;
  ConfigTokenList& out_;
  std::size_t index_ = 0;
  const char* lineEnd_ = nullptr;
};

} // namespace

void LexConfigLines(const ConfigLineSource& lines, const std::string& sourceName,
                    ConfigTokenList& out) {
  Lexer(lines, sourceName, out).Run();
}

} // namespace ZEL_detail
