//===- TarnStringUtil_Quote_test.cpp - Quoted strings -----------------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include <gtest/gtest.h>

#include <string>

TEST(TarnStringUtilQuote, IsQuotedNarrowAndWide) {
  struct Case { const char* narrow; const char16_t* wide; char q; bool quoted; };
  const Case cases[] = {
      {"", u"", '"', false},         {"\"", u"\"", '"', false},
      {"\"\"", u"\"\"", '"', true},  {"\"a\"", u"\"a\"", '"', true},
      {"\"a", u"\"a", '"', false},   {"a\"", u"a\"", '"', false},
      {"'a'", u"'a'", '"', false},   {"'a'", u"'a'", '\'', true},
      {"\"a'", u"\"a'", '\'', false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.narrow);
    EXPECT_EQ(TarnStringUtil::is_quoted_str(std::string(c.narrow), c.q), c.quoted);
    EXPECT_EQ(TarnStringUtil::is_quoted_str(c.wide, static_cast<char16_t>(c.q)), c.quoted);
  }
  EXPECT_FALSE(TarnStringUtil::is_quoted_str(static_cast<const char16_t*>(nullptr)));
}

TEST(TarnStringUtilQuote, ExtendPutsAffixesInsideQuotes) {
  struct Case { const char* in; const char* out; };
  const Case cases[] = {
      {"\"abc\"", "\"xabcy\""},
      {"abc", "xabcy"},
      {"  \t\"abc\" \r\n", "\"xabcy\""}, // blanks around the quotes go first
      {"\" a \"", "\"x a y\""},          // blanks inside the quotes stay
      {"\"", "x\"y"},                    // one quote is not a quoted string
      {"", "xy"},
      {"\"ab", "x\"aby"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in);
    std::string s = c.in;
    EXPECT_EQ(TarnStringUtil::extend_quoted_str(s, "x", "y"), c.out);
  }
  std::string single = "'v'";
  EXPECT_EQ(TarnStringUtil::extend_quoted_str(single, "<", ">", '\''), "'<v>'");
}

TEST(TarnStringUtilQuote, ExtendWithItselfAsAffix) {
  std::string s = "\"ab\"";
  TarnStringUtil::extend_quoted_str(s, s, s);
  EXPECT_EQ(s, "\"\"ab\"ab\"ab\"\"");
}

TEST(TarnStringUtilQuote, TruncateKeepsClosingQuote) {
  struct Case { const char* in; std::size_t n; const char* out; };
  const Case cases[] = {
      // Not longer than n: unchanged; not quoted: a plain cut; length 2
      // does not count as quoted.
      {"\"abcdef\"", 5, "\"abc\""}, {"\"abcdef\"", 8, "\"abcdef\""}, {"\"abcdef\"", 0, ""},
      {"\"abcdef\"", 1, "\""}, {"\"abc", 2, "\"a"}, {"\"\"", 1, "\""}, {"'abcd'", 4, "'ab'"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.in << " to " << c.n);
    std::string s = c.in;
    const char q = (c.in[0] == '\'') ? '\'' : '"';
    EXPECT_EQ(TarnStringUtil::truncate_quoted_str(s, c.n, q), c.out);
  }
}
