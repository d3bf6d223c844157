//===- TarnParFileLine.cpp - One parameter-file line -------------------------===//
#include "TarnUtilities/text/TarnParFileLine.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "text/parfile/ParFileSupport.h"
#include "text/strings/TextCharClass.h"

#include <algorithm>
#include <array>

using namespace TarnParDetail;

namespace {

// Character classes of the line-type scan, one table look-up per byte.
enum : unsigned char {
  kLetter = 1,
  kDigit = 2,
  kComma = 4,
  kEquals = 8,
  kParenthesis = 16,
  kCommentMarker = 32,
};

constexpr std::array<unsigned char, 256> MakeClasses() {
  std::array<unsigned char, 256> classes{};
  for (int c = 'a'; c <= 'z'; ++c)
    classes[c] = kLetter;
  for (int c = 'A'; c <= 'Z'; ++c)
    classes[c] = kLetter;
  for (int c = '0'; c <= '9'; ++c)
    classes[c] = kDigit;
  classes[','] = kComma;
  classes['='] = kEquals;
  classes['('] = kParenthesis;
  classes[')'] = kParenthesis;
  classes['!'] = kCommentMarker;
  classes['$'] = kCommentMarker;
  classes['#'] = kCommentMarker;
  return classes;
}
constexpr std::array<unsigned char, 256> kClasses = MakeClasses();

bool Is(char c, unsigned char classes) {
  return (kClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

// The position of the first separator at or after pos, or the size.
std::size_t FindOrEnd(std::string_view text, char separator, std::size_t pos) {
  while (pos < text.size() && text[pos] != separator)
    ++pos;
  return pos;
}

// The text without the blanks (TarnStringUtil::WHITE_SPACES_ALL) at its ends.
std::string_view Trimmed(std::string_view text) { return tarn_detail::TrimBlanks(text); }

bool StartsWithNoCase(std::string_view text, std::string_view lowerPrefix) {
  if (text.size() < lowerPrefix.size())
    return false;
  for (std::size_t i = 0; i < lowerPrefix.size(); ++i)
    if (ToLowerAscii(text[i]) != lowerPrefix[i])
      return false;
  return true;
}

// Appends the maximal runs of bytes other than separator, each trimmed; the
// same rule as TarnStringUtil::Split followed by Trim, without building a
// tokenizer for every line.
void AppendSplit(std::string_view text, char separator, std::vector<std::string>& out) {
  std::size_t pos = 0;
  while (pos < text.size()) {
    while (pos < text.size() && text[pos] == separator)
      ++pos;
    if (pos == text.size())
      break;
    const std::size_t end = FindOrEnd(text, separator, pos);
    out.emplace_back(Trimmed(text.substr(pos, end - pos)));
    pos = end;
  }
}

const std::u16string& NoFileName() {
  static const std::u16string empty;
  return empty;
}

} // namespace

TarnParFileLine::TarnParFileLine() = default;

TarnParFileLine::TarnParFileLine(const std::string& rawLine, const std::u16string& fileName,
                                 int lineNumber)
    : fileName_(std::make_shared<const std::u16string>(fileName)), lineNumber_(lineNumber) {
  analyse(rawLine);
}

TarnParFileLine::TarnParFileLine(std::string_view rawLine,
                                 std::shared_ptr<const std::u16string> fileName, int lineNumber)
    : fileName_(std::move(fileName)), lineNumber_(lineNumber) {
  analyse(rawLine);
}

const std::u16string& TarnParFileLine::getFileName() const {
  return fileName_ ? *fileName_ : NoFileName();
}

void TarnParFileLine::analyse(std::string_view rawLine) {
  line_.assign(Trimmed(trimComments(rawLine)));
  lineType_ = determineLineType();
  if (TraceEnabled()) {
    const std::string name = TarnStringUtil::wide_to_utf8(getFileName());
    ZEL_LogMacros::trace(__FILE__, __LINE__, kLineHeader,
                         ZEL_MESSAGE("File: %s Line nr: %d Line type: %d Line parsed: %s",
                                     name.c_str(), lineNumber_, static_cast<int>(lineType_),
                                     line_.c_str())
                             .c_str());
  }
  if (lineType_ == OLD_COMMAND || lineType_ == ASSIGNMENT || lineType_ == ID_NAME)
    tokenize();
}

void TarnParFileLine::AddToken(const std::string& token) { tokens_.push_back(token); }

void TarnParFileLine::dumpTrace() const {
  if (!TraceEnabled())
    return;
  std::string joined;
  TarnStringUtil::Concat(joined, tokens_, ", ");
  ZEL_LogMacros::trace(__FILE__, __LINE__, kLineHeader,
                       ZEL_MESSAGE("Line nr: %d Tokens %s", lineNumber_, joined.c_str()).c_str());
}

// The comment markers are searched in a lower-cased, trimmed copy of the line
// and the cut found there is applied to the raw line. Leading blanks of the
// raw line therefore move the cut to the left by their number: "  a = 1 ! x"
// keeps "  a =". Long-standing parameter files rely on the cut as it is.
// Markers are neither letters nor blanks, so their positions in the copy are
// their positions in the raw line less the leading blanks, and no copy is
// needed to find them.
std::string_view TarnParFileLine::trimComments(std::string_view rawLine) {
  std::size_t lead = 0;
  while (lead < rawLine.size() && IsBlank(rawLine[lead]))
    ++lead;
  const std::string_view copy = rawLine.substr(lead);
  // Whole-line comments: "** ..." and every line beginning "com" in any case.
  if (StartsWithNoCase(copy, "**") || StartsWithNoCase(copy, "com"))
    return rawLine.substr(0, 0);
  std::size_t marker = 0;
  while (marker < copy.size() && !Is(copy[marker], kCommentMarker))
    ++marker;
  return marker < copy.size() ? rawLine.substr(0, marker) : rawLine;
}

TarnParFileLine::LineType TarnParFileLine::determineLineType() {
  if (line_.empty())
    return EMPTY;
  if (line_.size() == 10 && StartsWithNoCase(line_, "list_begin"))
    return LIST_BEGIN;
  if (StartsWithNoCase(line_, "end_"))
    return END;
  if (StartsWithNoCase(line_, "id_name"))
    return ID_NAME;

  unsigned char seen = 0;
  for (const char c : line_)
    seen |= kClasses[static_cast<unsigned char>(c)];

  if (!(seen & kLetter)) {
    if (seen & kDigit)
      return VALUES;
    ZEL_LogMacros::warning(
        __FILE__, __LINE__, kLineHeader,
        ZEL_MESSAGE("Line # %d has an undefined contents. Ignoring.", lineNumber_).c_str());
    return UNDEFINED;
  }
  if (seen & kEquals)
    return ASSIGNMENT;
  if (seen & kComma)
    return StartsWithNoCase(line_, "include") ? INCLUDE : OLD_COMMAND;
  if (seen & kParenthesis)
    return PARENTHESIZED;
  if (StartsWithNoCase(line_, "exit") || StartsWithNoCase(line_, "sf_ident") ||
      StartsWithNoCase(line_, "save") || StartsWithNoCase(line_, "list")) {
    if (DebugEnabled())
      ZEL_LogMacros::debug(
          __FILE__, __LINE__, kLineHeader,
          ZEL_MESSAGE("Special/old command found in ParFile: %s", line_.c_str()).c_str());
    return OLD_COMMAND;
  }
  if (DebugEnabled())
    ZEL_LogMacros::debug(__FILE__, __LINE__, kLineHeader,
                         ZEL_MESSAGE("Command found in ParFile: %s", line_.c_str()).c_str());
  return COMMAND;
}

// Key and values: "a = 1, 2" gives {"a", "1", "2"}. Of "a = b = c" only the
// first and the last part between "=" count ({"a", "c"}); a line with fewer
// than two parts is split at its commas alone.
void TarnParFileLine::tokenize() {
  const std::string_view text = line_;
  std::string_view first;
  std::string_view last;
  std::size_t parts = 0;
  for (std::size_t pos = 0; pos < text.size();) {
    while (pos < text.size() && text[pos] == '=')
      ++pos;
    if (pos == text.size())
      break;
    const std::size_t end = FindOrEnd(text, '=', pos);
    last = text.substr(pos, end - pos);
    if (parts++ == 0)
      first = last;
    pos = end;
  }
  if (parts == 0) {
    ZEL_LogMacros::warning(
        __FILE__, __LINE__, kLineHeader,
        ZEL_MESSAGE("Line # %d has a command which cannot be parsed. Ignoring.", lineNumber_)
            .c_str());
    return;
  }
  const std::string_view values = parts == 1 ? text : last;
  tokens_.reserve(2 + static_cast<std::size_t>(std::count(values.begin(), values.end(), ',')));
  if (parts > 1)
    tokens_.emplace_back(Trimmed(first));
  AppendSplit(values, ',', tokens_);
}
