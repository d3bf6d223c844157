//===- TarnStringUtil_Trim_test.cpp - Trimming, chopping, padding -----------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include <gtest/gtest.h>

#include <cstring>
#include <list>
#include <string>
#include <vector>

namespace {

// The six characters of WHITE_SPACES_ALL, as an independent oracle.
bool IsWhiteAll(int c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\r' || c == '\f';
}

std::string Trimmed(std::string s) { return TarnStringUtil::Trim(s); }
std::string TrimmedLeft(std::string s) { return TarnStringUtil::TrimLeft(s); }
std::string TrimmedRight(std::string s) { return TarnStringUtil::TrimRight(s); }

} // namespace

TEST(TarnStringUtilTrim, RemovesExactlyTheSixWhiteSpaces) {
  for (int c = 1; c < 256; ++c) {
    SCOPED_TRACE(c);
    const std::string ch(1, static_cast<char>(c));
    const std::string in = ch + "x" + ch;
    EXPECT_EQ(Trimmed(in), IsWhiteAll(c) ? "x" : in);
    EXPECT_EQ(TrimmedLeft(in), IsWhiteAll(c) ? "x" + ch : in);
    EXPECT_EQ(TrimmedRight(in), IsWhiteAll(c) ? ch + "x" : in);
  }
  EXPECT_EQ(Trimmed("  a b  "), "a b");
  EXPECT_EQ(Trimmed(""), "");
  EXPECT_EQ(TrimmedLeft("   "), "");
  EXPECT_EQ(TrimmedRight("   "), "   "); // TrimRight leaves an all-blank string alone
}

TEST(TarnStringUtilTrim, TrimWithSet) {
  std::string s = "--a-b--";
  EXPECT_EQ(TarnStringUtil::Trim(s, "-"), "a-b");
  s = "-+-";
  EXPECT_EQ(TarnStringUtil::Trim(s, "+-"), "");
  s = " a ";
  EXPECT_EQ(TarnStringUtil::Trim(s, ""), " a ");
  EXPECT_EQ(TarnStringUtil::Trim(s, nullptr), " a ");
  EXPECT_EQ(TarnStringUtil::Trim(s, TarnStringUtil::WHITE_SPACES_DELIMITERS), "a");
}

TEST(TarnStringUtilTrim, TrimContainersKeepsOrder) {
  std::list<std::string> l = {" a", "b\t", "  ", "c"};
  TarnStringUtil::Trim(l);
  EXPECT_EQ(l, (std::list<std::string>{"a", "b", "", "c"}));
}

TEST(TarnStringUtilTrim, ChopFamily) {
  struct Case { const char* in; const char* right; const char* left; };
  const Case cases[] = {{"", "", ""}, {"a", "", ""}, {"abc", "ab", "bc"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in);
    EXPECT_EQ(TarnStringUtil::get_chopped(c.in), c.right);
    EXPECT_EQ(TarnStringUtil::get_chopped_right(c.in), c.right);
    EXPECT_EQ(TarnStringUtil::get_chopped_left(c.in), c.left);
    std::string a = c.in, b = c.in, d = c.in;
    EXPECT_EQ(TarnStringUtil::chop(a), c.right);
    EXPECT_EQ(TarnStringUtil::chop_right(b), c.right);
    EXPECT_EQ(TarnStringUtil::chop_left(d), c.left);
  }
}

TEST(TarnStringUtilTrim, RemoveEol) {
  struct Case { const char* in; const char* out; };
  const Case cases[] = {{"", ""},          {"ab", "ab"},     {"ab\n", "ab"},
                        {"ab\r\n\r", "ab"}, {"\n\r", ""},     {"a\nb\n", "a\nb"},
                        {"ab \n", "ab "}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::string(c.in)));
    char buf[16];
    std::strcpy(buf, c.in);
    EXPECT_EQ(TarnStringUtil::remove_eol(buf), std::strlen(c.out));
    EXPECT_STREQ(buf, c.out);
  }
  EXPECT_EQ(TarnStringUtil::remove_eol(nullptr), 0u);
}

TEST(TarnStringUtilTrim, RemoveWhiteSpacesDeletesBlanksOnly) {
  struct Case { const char* in; const char* out; };
  const Case cases[] = {{"", ""},
                        {" a\tb c ", "abc"},
                        {"\t\n\v\f\r ", ""},
                        {"a\x1C" "b\xA0", "a\x1C" "b\xA0"},
                        {"x y\r\nz", "xyz"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::string(c.in)));
    char buf[16];
    std::strcpy(buf, c.in);
    char* end = TarnStringUtil::remove_white_spaces(buf);
    EXPECT_STREQ(buf, c.out);
    EXPECT_EQ(end, buf + std::strlen(c.out));
    EXPECT_EQ(*end, '\0');
    std::string s = c.in;
    EXPECT_EQ(TarnStringUtil::remove_white_spaces(s), c.out);
  }
  EXPECT_EQ(TarnStringUtil::remove_white_spaces(static_cast<char*>(nullptr)), nullptr);
}

TEST(TarnStringUtilTrim, Padding) {
  std::string s = "7";
  EXPECT_EQ(TarnStringUtil::PadLeft(s, 3, '0'), "007");
  EXPECT_EQ(TarnStringUtil::PadLeft(s, 2, '0'), "007");
  EXPECT_EQ(TarnStringUtil::PadRight(s, 5, '.'), "007..");
  EXPECT_EQ(TarnStringUtil::PadRight(s, 0, '.'), "007..");
  std::string e;
  EXPECT_EQ(TarnStringUtil::PadLeft(e, 2), "  ");
  std::u16string w = u"ab";
  EXPECT_EQ(TarnStringUtil::PadLeft(w, 4, u'\u00E9'), u"\u00E9\u00E9ab");
  EXPECT_EQ(TarnStringUtil::PadLeft(w, 1, u'x'), u"\u00E9\u00E9ab");
}

TEST(TarnStringUtilTrim, CopyToFStringPadsAndNeverTerminates) {
  struct Case { std::string in; std::size_t n; const char* written; };
  const Case cases[] = {{"ab", 5, "ab   "}, {"abcdefg", 5, "abcde"}, {"", 3, "   "},
                        {"abc", 3, "abc"},    {"abc", 0, ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in);
    char buf[8];
    std::memset(buf, '#', sizeof buf);
    TarnStringUtil::CopyToFString(buf, c.n, c.in);
    EXPECT_EQ(std::string(buf, c.n), c.written);
    EXPECT_EQ(std::string(buf + c.n, sizeof buf - c.n), std::string(sizeof buf - c.n, '#'));
  }
  TarnStringUtil::CopyToFString(nullptr, 4, "x"); // writes nothing, must not crash
}
