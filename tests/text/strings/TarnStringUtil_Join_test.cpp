//===- TarnStringUtil_Join_test.cpp - Joining, searching, hashing, dumping --===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(TarnStringUtilJoin, ConcatVector) {
  struct Case { std::vector<std::string> v; const char* joined; };
  const Case cases[] = {{{}, ""}, {{"a"}, "a"}, {{"a", "b", "c"}, "a, b, c"}, {{"", ""}, ", "}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.joined);
    std::string out = "stale";
    EXPECT_EQ(TarnStringUtil::Concat(out, c.v, ", "), c.joined);
    EXPECT_EQ(TarnStringUtil::Concat(c.v, ", "), c.joined);
  }
}

TEST(TarnStringUtilJoin, ConcatCArray) {
  const char* items[] = {"x", nullptr, "z"};
  std::string out = "stale";
  EXPECT_EQ(TarnStringUtil::Concat(out, 3, items, "+"), "x++z");
  EXPECT_EQ(TarnStringUtil::Concat(out, 1, items, "+"), "x");
  EXPECT_EQ(TarnStringUtil::Concat(out, 0, items, "+"), "");
  out = "stale";
  EXPECT_EQ(TarnStringUtil::Concat(out, -4, items, "+"), "");
  EXPECT_EQ(TarnStringUtil::Concat(out, 3, items, nullptr), "xz");
  EXPECT_EQ(TarnStringUtil::Concat(out, 2, nullptr, "+"), "");
}

TEST(TarnStringUtilJoin, ConcatWide) {
  const std::vector<std::u16string> v = {u"\u00E9", u"b"};
  std::u16string out = u"stale";
  EXPECT_EQ(TarnStringUtil::Concat(out, v, u"::"), u"\u00E9::b");
  EXPECT_EQ(TarnStringUtil::Concat(v, u"-"), u"\u00E9-b");
  EXPECT_EQ(TarnStringUtil::Concat(std::vector<std::u16string>{}, u"-"), u"");
}

TEST(TarnStringUtilJoin, FindFirstEqualElement) {
  const std::vector<std::string> v = {"a", "b", "a", ""};
  EXPECT_EQ(TarnStringUtil::Find(v, "a"), 0);
  EXPECT_EQ(TarnStringUtil::Find(v, ""), 3);
  EXPECT_EQ(TarnStringUtil::Find(v, "A"), -1);
  EXPECT_EQ(TarnStringUtil::Find(v, nullptr), -1);
  EXPECT_EQ(TarnStringUtil::Find({}, "a"), -1);
}

TEST(TarnStringUtilJoin, FindSubstrNocase) {
  struct Case { const char* hay; const char* needle; std::int64_t index; };
  const Case cases[] = {
      {"xAbc", "ab", 1},
      {"abcab", "ac", -1}, // only the first 'a' is tried
      {"ab", "b", -1},     // a match on the last byte never counts
      {"a", "a", -1},
      {"ab", "a", 0},
      {"abc", "", -1},
      {"x[y", "[", 1},
      {"x{y", "[", -1},    // only letters fold
      {"\xE9xy", "\xC9", -1},
      {"ke Y=1", "y=", 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.hay << " / " << c.needle);
    EXPECT_EQ(TarnStringUtil::find_substr_nocase(c.hay, c.needle), c.index);
  }
  EXPECT_EQ(TarnStringUtil::find_substr_nocase(nullptr, "a"), -1);
  EXPECT_EQ(TarnStringUtil::find_substr_nocase("a", nullptr), -1);
}

TEST(TarnStringUtilJoin, HashValues) {
  struct Case { std::string in; std::int32_t hash; };
  const Case cases[] = {
      {"", -1640531535},
      {"\x80", -1013904286}, // bytes above 0x7F are sign-extended
      {"key", -239349834},
      {"abcdefghijklmnopqrstuvwxyz0123456789", 1044119658},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.in));
    EXPECT_EQ(TarnStringUtil::Hash(c.in), c.hash);
  }
}

TEST(TarnStringUtilJoin, DumpBufferHex) {
  const unsigned char bytes[] = {0x00, 0x0F, 0xA0, 0xFF, 0x5c};
  std::string out = "stale";
  const char* p = TarnStringUtil::DumpBufferHex(bytes, sizeof bytes, out);
  EXPECT_EQ(out, "000FA0FF5C");
  EXPECT_EQ(p, out.c_str());
  EXPECT_STREQ(TarnStringUtil::DumpBufferHex(bytes, 0, out), "");
  out = "stale";
  EXPECT_STREQ(TarnStringUtil::DumpBufferHex(nullptr, 4, out), "");
}

TEST(TarnStringUtilJoin, BinToStringByte) {
  for (int b = 0; b < 256; ++b) {
    SCOPED_TRACE(b);
    const std::string s = TarnStringUtil::BinToString(static_cast<unsigned char>(b));
    ASSERT_EQ(s.size(), 10u);
    EXPECT_EQ(s[0], ' ');
    EXPECT_EQ(s[5], ' ');
    EXPECT_EQ(std::stoi(s.substr(1, 4) + s.substr(6, 4), nullptr, 2), b);
  }
}

TEST(TarnStringUtilJoin, BinToStringIntMostSignificantByteFirst) {
  const std::string s = TarnStringUtil::BinToString(0x12345678);
  EXPECT_EQ(s, " 0001 0010 0011 0100 0101 0110 0111 1000");
  EXPECT_EQ(TarnStringUtil::BinToString(-1), " 1111 1111 1111 1111 1111 1111 1111 1111");
}

TEST(TarnStringUtilJoin, SystemTimeHasAsctimeFormWithoutNewline) {
  EXPECT_THAT(TarnStringUtil::get_system_time_str(),
              testing::MatchesRegex("[A-Z][a-z][a-z] [A-Z][a-z][a-z] [ 123][0-9] "
                                    "[0-2][0-9]:[0-5][0-9]:[0-6][0-9] [0-9][0-9][0-9][0-9]"));
}

TEST(TarnStringUtilJoin, EmptyTrailingStrings) {
  EXPECT_EQ(TarnStringUtil::num_empty_trailing_strings({}), 0u);
  EXPECT_EQ(TarnStringUtil::num_empty_trailing_strings({"a", "", ""}), 2u);
  EXPECT_EQ(TarnStringUtil::num_empty_trailing_strings({"", "a", ""}), 1u);
  EXPECT_EQ(TarnStringUtil::num_empty_trailing_strings({"", " "}), 0u);
}
