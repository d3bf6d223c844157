//===- TarnParFileLine_test.cpp - Comment removal, line types, tokens -------===//
#include "TarnUtilities/text/TarnParFileLine.h"
#include "text/parfile/ParLogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Type = TarnParFileLine::LineType;
using Tokens = std::vector<std::string>;

namespace {

struct LineCase {
  const char* raw;
  Type type;
  const char* text; // the kept line
  Tokens tokens;
};

TarnParFileLine Make(const std::string& raw, int lineNumber = 1) {
  return TarnParFileLine(raw, u"m.par", lineNumber);
}

void ExpectCases(const std::vector<LineCase>& cases) {
  ParLogCapture quiet;
  for (const LineCase& c : cases) {
    SCOPED_TRACE(std::string("raw line: '") + c.raw + "'");
    const TarnParFileLine line = Make(c.raw);
    EXPECT_EQ(line.getLineType(), c.type);
    EXPECT_EQ(line.getLine(), c.text);
    EXPECT_EQ(line.getTokens(), c.tokens);
  }
}

} // namespace

TEST(TarnParFileLine, RemovesComments) {
  ExpectCases({
      {"value = 3 ! note", Type::ASSIGNMENT, "value = 3", {"value", "3"}},
      {"x = 1 # hash", Type::ASSIGNMENT, "x = 1", {"x", "1"}},
      // The first of several markers cuts.
      {"x = 2 $ a # b ! c", Type::ASSIGNMENT, "x = 2", {"x", "2"}},
      {"! whole line", Type::EMPTY, "", {}},
      {"** anything = 1", Type::EMPTY, "", {}},
      // Every line beginning "com" is a comment, whatever follows.
      {"COMPUTE all", Type::EMPTY, "", {}},
      {"compression = 3", Type::EMPTY, "", {}},
      // A single star is not a comment.
      {"*star", Type::COMMAND, "*star", {}},
      {"", Type::EMPTY, "", {}},
  });
}

TEST(TarnParFileLine, CutFoundInTrimmedCopyIsAppliedToTheRawLine) {
  // The marker sits at position 6 of "a = 1 ! x" but the cut is applied to
  // the raw line with its three leading blanks: "   a =" remains.
  ExpectCases({
      {"   a = 1 ! x", Type::ASSIGNMENT, "a =", {"a ="}},
      {"\t\tkey = 12345 ! c", Type::ASSIGNMENT, "key = 1234", {"key", "1234"}},
      // Leading blanks at least as long as the kept text leave nothing.
      {"      ab!", Type::EMPTY, "", {}},
      // Trailing blanks do not move the cut.
      {"x = 1 ! c   ", Type::ASSIGNMENT, "x = 1", {"x", "1"}},
  });
}

TEST(TarnParFileLine, ClassifiesInTheOrderOfTheTests) {
  ExpectCases({
      {"list_begin", Type::LIST_BEGIN, "list_begin", {}},
      {"  List_Begin \r", Type::LIST_BEGIN, "List_Begin", {}},
      // Only the whole line "list_begin" opens a list.
      {"list_begin 5", Type::OLD_COMMAND, "list_begin 5", {"list_begin 5"}},
      {"End_", Type::END, "End_", {}},
      {"end_ = 5, x", Type::END, "end_ = 5, x", {}},
      {"id_name=abc", Type::ID_NAME, "id_name=abc", {"id_name", "abc"}},
      {"ID_NAME", Type::ID_NAME, "ID_NAME", {"ID_NAME"}},
      {"id_names_follow", Type::ID_NAME, "id_names_follow", {"id_names_follow"}},
      {"12 13", Type::VALUES, "12 13", {}},
      {"(1, 2) = 3", Type::VALUES, "(1, 2) = 3", {}},
      {"a = 1, 2 ,3", Type::ASSIGNMENT, "a = 1, 2 ,3", {"a", "1", "2", "3"}},
      {"f(x) = 2", Type::ASSIGNMENT, "f(x) = 2", {"f(x)", "2"}},
      {"include, sub.par", Type::INCLUDE, "include, sub.par", {}},
      {"include_all, x", Type::INCLUDE, "include_all, x", {}},
      {"save, x, y", Type::OLD_COMMAND, "save, x, y", {"save", "x", "y"}},
      {"f(x)", Type::PARENTHESIZED, "f(x)", {}},
      {"exit", Type::OLD_COMMAND, "exit", {"exit"}},
      {"EXIT now", Type::OLD_COMMAND, "EXIT now", {"EXIT now"}},
      {"listing", Type::OLD_COMMAND, "listing", {"listing"}},
      {"include sub.par", Type::COMMAND, "include sub.par", {}},
      {"MY_COMMAND", Type::COMMAND, "MY_COMMAND", {}},
      // An exponent letter makes a number a command word.
      {"1.5E3", Type::COMMAND, "1.5E3", {}},
      {"-- .", Type::UNDEFINED, "-- .", {}},
      // Bytes above 127 are neither letters nor digits.
      {"\xC3\xA9\xC3\xA8", Type::UNDEFINED, "\xC3\xA9\xC3\xA8", {}},
      {"Gr\xC3\xB6\xC3\x9F" "e", Type::COMMAND, "Gr\xC3\xB6\xC3\x9F" "e", {}},
  });
}

TEST(TarnParFileLine, TokenisesKeyAndLastPart) {
  ExpectCases({
      // The parts between the first and the last "=" are dropped.
      {"a = b = c", Type::ASSIGNMENT, "a = b = c", {"a", "c"}},
      // Empty fields between commas vanish; a blank field stays as "".
      {"k = 1,,2", Type::ASSIGNMENT, "k = 1,,2", {"k", "1", "2"}},
      {"k = 1, ,2", Type::ASSIGNMENT, "k = 1, ,2", {"k", "1", "", "2"}},
      // One part: the whole line split at the commas, "=" included.
      {"key =", Type::ASSIGNMENT, "key =", {"key ="}},
      {"= key", Type::ASSIGNMENT, "= key", {"= key"}},
      {"abc, def = 1", Type::ASSIGNMENT, "abc, def = 1", {"abc, def", "1"}},
      {"K = Some Value, X", Type::ASSIGNMENT, "K = Some Value, X", {"K", "Some Value", "X"}},
      {"\tkey\t=\tv\t", Type::ASSIGNMENT, "key\t=\tv", {"key", "v"}},
  });
}

TEST(TarnParFileLine, WritesTraceAndDebugLines) {
  ParLogCapture log;
  const TarnParFileLine command("  MY_CMD ", u"dir/Model.par", 7);
  const TarnParFileLine old("exit", u"dir/Model.par", 8);
  const TarnParFileLine assignment("a = 1, 2", u"dir/Model.par", 9);
  EXPECT_THAT(log.Messages("TRACE"),
              ElementsAre("File: dir/Model.par Line nr: 7 Line type: 3 Line parsed: MY_CMD",
                          "File: dir/Model.par Line nr: 8 Line type: 1 Line parsed: exit",
                          "File: dir/Model.par Line nr: 9 Line type: 4 Line parsed: a = 1, 2"));
  EXPECT_THAT(log.Messages("DEBUG"), ElementsAre("Command found in ParFile: MY_CMD",
                                                 "Special/old command found in ParFile: exit"));
  EXPECT_THAT(log.Messages("WARNING"), IsEmpty());
  for (const CapturedLine& line : log.lines)
    EXPECT_EQ(line.header, "TarnUtilities|TarnParFileLine");

  log.lines.clear();
  assignment.dumpTrace();
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(log.lines[0].level, "TRACE");
  EXPECT_EQ(log.lines[0].message, "Line nr: 9 Tokens a, 1, 2");
}

// Any bytes at all: no crash, a trimmed line without comment markers, and
// tokens only for the three token-carrying types.
TEST(TarnParFileLine, ArbitraryBytesGiveConsistentLines) {
  ParLogCapture quiet;
  std::mt19937 random(20240611);
  const std::string alphabet = "aeiLIST_beGnd= ,!#$*()0123456789\t\r\x01\x7f\xc3\xa9";
  for (int round = 0; round < 3000; ++round) {
    std::string raw;
    const int length = static_cast<int>(random() % 24);
    for (int i = 0; i < length; ++i)
      raw.push_back(round % 3 == 0 ? static_cast<char>(1 + random() % 255)
                                   : alphabet[random() % alphabet.size()]);
    SCOPED_TRACE("raw line: '" + raw + "'");
    const TarnParFileLine line = Make(raw);
    const std::string& text = line.getLine();
    EXPECT_EQ(text.find_first_of("!#$"), std::string::npos);
    if (!text.empty()) {
      EXPECT_EQ(std::string(" \t\n\v\f\r").find(text.front()), std::string::npos);
      EXPECT_EQ(std::string(" \t\n\v\f\r").find(text.back()), std::string::npos);
      EXPECT_NE(raw.find(text), std::string::npos);
    }
    EXPECT_EQ(text.empty(), line.getLineType() == TarnParFileLine::EMPTY);
    const Type type = line.getLineType();
    if (type != Type::OLD_COMMAND && type != Type::ASSIGNMENT && type != Type::ID_NAME)
      EXPECT_THAT(line.getTokens(), IsEmpty());
    else
      EXPECT_FALSE(line.getTokens().empty());
  }
}
