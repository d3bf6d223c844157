//===- TarnParFileLine.cpp - One parameter-file line -------------------------===//
#include "TarnUtilities/text/TarnParFileLine.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "text/ParFileSupport.h"

#include <algorithm>

using namespace TarnParDetail;

TarnParFileLine::TarnParFileLine() = default;

TarnParFileLine::TarnParFileLine(const std::string& rawLine, const std::u16string& fileName,
                                 int lineNumber)
    : fileName_(fileName), lineNumber_(lineNumber) {
  line_ = trimComments(rawLine);
  TarnStringUtil::Trim(line_);
  lineType_ = determineLineType();
  if (TraceEnabled()) {
    const std::string name = TarnStringUtil::wide_to_utf8(fileName_);
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
std::string TarnParFileLine::trimComments(const std::string& rawLine) {
  std::size_t cut = rawLine.size();
  std::size_t lead = 0;
  while (lead < rawLine.size() && IsBlank(rawLine[lead]))
    ++lead;
  for (const char marker : {'!', '$', '#'}) {
    const std::size_t at = rawLine.find(marker, lead);
    if (at != std::string::npos)
      cut = std::min(cut, at - lead);
  }
  // Whole-line comments: "** ..." and every line beginning "com" in any case.
  if (StartsWithNoCase(rawLine, lead, "**") || StartsWithNoCase(rawLine, lead, "com"))
    cut = 0;
  return rawLine.substr(0, cut);
}

TarnParFileLine::LineType TarnParFileLine::determineLineType() {
  if (line_.empty())
    return EMPTY;
  if (EqualsNoCase(line_, "list_begin"))
    return LIST_BEGIN;
  if (StartsWithNoCase(line_, 0, "end_"))
    return END;
  if (StartsWithNoCase(line_, 0, "id_name"))
    return ID_NAME;

  bool hasLetter = false;
  bool hasDigit = false;
  bool hasComma = false;
  bool hasEquals = false;
  bool hasParenthesis = false;
  for (const char c : line_) {
    hasLetter = hasLetter || IsLetter(c);
    hasDigit = hasDigit || IsDigit(c);
    hasComma = hasComma || c == ',';
    hasEquals = hasEquals || c == '=';
    hasParenthesis = hasParenthesis || c == '(' || c == ')';
  }

  if (!hasLetter) {
    if (hasDigit)
      return VALUES;
    ZEL_LogMacros::warning(
        __FILE__, __LINE__, kLineHeader,
        ZEL_MESSAGE("Line # %d has an undefined contents. Ignoring.", lineNumber_).c_str());
    return UNDEFINED;
  }
  if (hasEquals)
    return ASSIGNMENT;
  if (hasComma)
    return StartsWithNoCase(line_, 0, "include") ? INCLUDE : OLD_COMMAND;
  if (hasParenthesis)
    return PARENTHESIZED;
  if (StartsWithNoCase(line_, 0, "exit") || StartsWithNoCase(line_, 0, "sf_ident") ||
      StartsWithNoCase(line_, 0, "save") || StartsWithNoCase(line_, 0, "list")) {
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
// first and the last part count ({"a", "c"}); lines without "=" are split at
// the commas alone.
void TarnParFileLine::tokenize() {
  std::vector<std::string> parts;
  TarnStringUtil::Split(line_, "=", parts);
  if (parts.empty()) {
    ZEL_LogMacros::warning(
        __FILE__, __LINE__, kLineHeader,
        ZEL_MESSAGE("Line # %d has a command which cannot be parsed. Ignoring.", lineNumber_)
            .c_str());
    return;
  }
  if (parts.size() == 1) {
    TarnStringUtil::Split(line_, ",", tokens_);
  } else {
    TarnStringUtil::Split(parts.back(), ",", tokens_);
    tokens_.insert(tokens_.begin(), std::move(parts.front()));
  }
  TarnStringUtil::Trim(tokens_);
}
