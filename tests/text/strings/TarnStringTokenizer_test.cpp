//===- TarnStringTokenizer_test.cpp - Reusable line splitter ----------------===//
#include "TarnUtilities/text/TarnStringTokenizer.h"

#include "text/strings/TokenOracle.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Tokens(const TarnStringTokenizer& tok) {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < tok.NumTokens(); ++i)
    out.emplace_back(tok.GetToken(i));
  return out;
}

} // namespace

TEST(TarnStringTokenizer, SeparatorTable) {
  TarnStringTokenizer tok(16);
  EXPECT_FALSE(tok.HasSeparators());
  tok.SplitLine("a b,c");
  EXPECT_EQ(Tokens(tok), (std::vector<std::string>{"a b,c"})); // nothing separates

  tok.SetSeparators(" \xFF");
  EXPECT_TRUE(tok.HasSeparators());
  for (int c = 0; c < 256; ++c) {
    SCOPED_TRACE(c);
    EXPECT_EQ(tok.IsSeparator(static_cast<unsigned char>(c)), c == ' ' || c == 0xFF);
  }
  tok.SplitLine("a\xFF" "b c");
  EXPECT_EQ(Tokens(tok), (std::vector<std::string>{"a", "b", "c"}));

  tok.SetSeparators(","); // replaces, does not add
  EXPECT_FALSE(tok.IsSeparator(' '));
  EXPECT_TRUE(tok.IsSeparator(','));
  tok.SetSeparators(nullptr);
  EXPECT_TRUE(tok.HasSeparators());
  EXPECT_FALSE(tok.IsSeparator(','));
}

TEST(TarnStringTokenizer, SetFlagsOnlyAdds) {
  unsigned char table[TarnStringTokenizer::kTableSize] = {};
  table['x'] = 1;
  TarnStringTokenizer::SetFlags("ab", table);
  for (int c = 0; c < 256; ++c) {
    SCOPED_TRACE(c);
    EXPECT_EQ(table[c], (c == 'x' || c == 'a' || c == 'b') ? 1 : 0);
  }
  TarnStringTokenizer::SetFlags(nullptr, table); // no effect, no crash
  EXPECT_EQ(table['x'], 1);
}

TEST(TarnStringTokenizer, ResetNullAndCopyOut) {
  TarnStringTokenizer tok(16, ";");
  tok.SplitLine("one;two");
  std::string out;
  tok.GetToken(1, out);
  EXPECT_EQ(out, "two");
  tok.ResetContent();
  EXPECT_EQ(tok.NumTokens(), 0u);
  EXPECT_EQ(tok.SplitLine(nullptr), 0u);
  EXPECT_EQ(tok.NumTokens(), 0u);
}

TEST(TarnStringTokenizer, RandomLinesAgreeWithBruteForce) {
  // Sets of one byte (also written twice) take a different search path from
  // sets of several bytes; both must find the same tokens.
  const char* const separatorSets[] = {" \t,", ",", ",,", "\xE9", " x"};
  std::mt19937 rng(4242);
  const char alphabet[] = "xy \t,\xE9";
  std::uniform_int_distribution<int> pick(0, 5), length(0, 60);
  std::uniform_int_distribution<std::size_t> capacity(0, 50);
  for (const char* seps : separatorSets) {
    SCOPED_TRACE(testing::PrintToString(std::string(seps)));
    for (int round = 0; round < 10; ++round) {
      const std::size_t maxLen = capacity(rng);
      TarnStringTokenizer tok(maxLen, seps);
      for (int iter = 0; iter < 100; ++iter) { // one tokenizer, many lines
        std::string line;
        for (int n = length(rng); n > 0; --n)
          line.push_back(alphabet[pick(rng)]);
        const auto expected = tarn_test::BruteForceTokens(line.substr(0, maxLen), seps);
        ASSERT_EQ(tok.SplitLine(line.c_str()), expected.size()) << line << " cut at " << maxLen;
        ASSERT_EQ(Tokens(tok), expected) << line << " cut at " << maxLen;
      }
    }
  }
}

TEST(TarnStringTokenizer, ImpossibleLengthIsRefused) {
  EXPECT_THROW(TarnStringTokenizer(std::numeric_limits<std::size_t>::max()), std::length_error);
}

#ifndef NDEBUG
TEST(TarnStringTokenizerDeathTest, TokenIndexIsAssertedInDebugBuilds) {
  TarnStringTokenizer tok(8, " ");
  tok.SplitLine("a b");
  EXPECT_DEATH(tok.GetToken(2), "token index out of range");
}
#endif
