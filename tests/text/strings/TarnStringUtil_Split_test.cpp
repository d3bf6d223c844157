//===- TarnStringUtil_Split_test.cpp - Splitting into tokens ----------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include "text/strings/TokenOracle.h"

#include <gtest/gtest.h>

#include <list>
#include <random>
#include <string>
#include <vector>

TEST(TarnStringUtilSplit, SplitWithTrimming) {
  std::list<std::string> out = {"stale"};
  EXPECT_EQ(TarnStringUtil::Split("a,,b, c", ",", " ", out), 3u);
  EXPECT_EQ(out, (std::list<std::string>{"a", "b", "c"}));
  // A token made only of trim characters stays as an empty element.
  EXPECT_EQ(TarnStringUtil::Split("a, ,b", ",", " ", out), 3u);
  EXPECT_EQ(out, (std::list<std::string>{"a", "", "b"}));
  EXPECT_EQ(TarnStringUtil::Split("", ",", " ", out), 0u);
  EXPECT_TRUE(out.empty());
  EXPECT_EQ(TarnStringUtil::Split(" x ; y ", ";", nullptr, out), 2u);
  EXPECT_EQ(out, (std::list<std::string>{" x ", " y "}));
}

TEST(TarnStringUtilSplit, SplitWithoutTrimming) {
  struct Case { std::string in; const char* seps; std::vector<std::string> tokens; };
  const Case cases[] = {
      {"", ",", {}}, {"abc", ",", {"abc"}}, {"abc", "", {"abc"}}, {"abc", nullptr, {"abc"}},
      {std::string("a b\0c d", 7), " ", {"a", "b"}}, // the text ends at NUL
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.in));
    std::vector<std::string> out = {"stale"};
    EXPECT_EQ(TarnStringUtil::Split(c.in, c.seps, out), c.tokens.size());
    EXPECT_EQ(out, c.tokens);
  }
}

TEST(TarnStringUtilSplit, RandomTextsAgreeWithBruteForce) {
  std::mt19937 rng(99);
  const char alphabet[] = "ab, ;\t";
  std::uniform_int_distribution<int> pick(0, 5), length(0, 40);
  for (int iter = 0; iter < 3000; ++iter) {
    std::string s;
    for (int n = length(rng); n > 0; --n)
      s.push_back(alphabet[pick(rng)]);
    std::vector<std::string> out;
    const std::vector<std::string> expected = tarn_test::BruteForceTokens(s, ", ;");
    ASSERT_EQ(TarnStringUtil::Split(s, ", ;", out), expected.size()) << s;
    ASSERT_EQ(out, expected) << s;
  }
}

TEST(TarnStringUtilSplit, SplitPairSkipsOneCharacter) {
  struct Case { std::string in, sep, first, second; ZelStatusCode status; };
  const Case cases[] = {
      {"key==value", "==", "key", "=value", STATUS_OK}, {"a::b::c", "::", "a", ":b::c", STATUS_OK},
      {"a=b", "=", "a", "b", STATUS_OK},   {"a=b=c", "=", "a", "b=c", STATUS_OK},
      {"=x", "=", "", "x", STATUS_OK},     {"x=", "=", "x", "", STATUS_OK},
      {"abc", "=", "abc", "", ERR_NOT_FOUND}, {"", "=", "", "", ERR_NOT_FOUND},
      {"abc", "", "abc", "", ERR_NOT_FOUND}, {"a=b", "==", "a=b", "", ERR_NOT_FOUND},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in + " / " + c.sep);
    std::pair<std::string, std::string> out = {"stale", "stale"};
    EXPECT_EQ(TarnStringUtil::SplitPair(c.in, c.sep, out), c.status);
    EXPECT_EQ(out.first, c.first);
    EXPECT_EQ(out.second, c.second);
  }
}

TEST(TarnStringUtilSplit, SplitPairIntoItsOwnInput) {
  std::pair<std::string, std::string> out = {"", "left=right"};
  EXPECT_EQ(TarnStringUtil::SplitPair(out.second, "=", out), STATUS_OK);
  EXPECT_EQ(out.first, "left");
  EXPECT_EQ(out.second, "right");
}
