//===- TextLinesParser_test.cpp - Whole-file lines --------------------------===//
//
// Hand-picked texts for the final line end, and an oracle: a direct
// transcription of the two-bit-set description of the split (mark line
// starts and ends, then cut), run against the parser over many random texts
// of ordinary characters, CR and LF. Files are real files in a temporary
// directory.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TextLinesParser.h"
#include "system/FileTestHelpers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <sys/stat.h>
#include <vector>

using testing::ElementsAreArray;
using tarn_test::TempDir;
using tarn_test::WriteFile;

namespace {

struct Split {
  std::vector<std::string> lines;
  std::vector<std::size_t> starts; // offset of each line in the text
  std::uint64_t longest = 0;
};

// The oracle: starts and ends marked in two bit sets while walking the text
// with the line-end character being processed, then the text cut at every
// end after the last start.
Split OracleSplit(const std::string& text) {
  const std::size_t n = text.size();
  std::vector<bool> starts(n + 1), ends(n + 1);
  starts[0] = true;
  ends[n] = true;
  char state = 0;
  std::size_t lineStart = 0;
  std::uint64_t longest = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const char c = text[i];
    if (c != '\n' && c != '\r') {
      if (state != 0) {
        starts[i] = true;
        lineStart = i;
        state = 0;
      }
    } else if (state == 0) {
      ends[i] = true;
      longest = std::max<std::uint64_t>(longest, i - lineStart);
      state = c;
    } else if (c != state) {
      starts[i + 1] = true;
      lineStart = i + 1;
      state = 0;
    } else {
      starts[i] = ends[i] = true;
    }
  }
  if (state != 0)
    starts[n] = true;
  longest = std::max<std::uint64_t>(longest, n - lineStart);
  Split split;
  std::size_t last = 0;
  for (std::size_t i = 0; i <= n; ++i) {
    if (starts[i])
      last = i;
    if (ends[i]) {
      split.lines.push_back(text.substr(last, i - last));
      split.starts.push_back(last);
    }
  }
  split.longest = longest;
  return split;
}

Split ParserSplit(const TextLinesParser& parser) {
  Split split;
  for (std::uint64_t i = 0; i < parser.GetNumLines(); ++i)
    split.lines.emplace_back(parser.GetLine(i));
  split.longest = parser.GetLongestLineLength();
  return split;
}

// Loads text from a file and checks every line against the oracle by its
// place in the buffer, its bytes and the zero that ends it, so that zero
// bytes inside a line count as text.
void ExpectLoadedLikeTheOracle(const TempDir& dir, const std::string& text) {
  WriteFile(dir / "t", text);
  TextLinesParser parser;
  ASSERT_TRUE(parser.LoadTextFromFile((dir / "t").c_str()));
  EXPECT_EQ(parser.GetTextLength(), text.size());
  const Split expected = text.empty() ? Split() : OracleSplit(text);
  ASSERT_EQ(parser.GetNumLines(), expected.lines.size());
  EXPECT_EQ(parser.GetLongestLineLength(), expected.longest);
  for (std::size_t i = 0; i < expected.lines.size(); ++i) {
    const std::string& line = expected.lines[i];
    const char* got = parser.GetLine(i);
    ASSERT_EQ(static_cast<std::size_t>(got - parser.GetLine(0)), expected.starts[i]) << i;
    ASSERT_EQ(std::string(got, line.size()), line) << i;
    ASSERT_EQ(got[line.size()], '\0') << i;
  }
}

// Random text of a, zero, blank, LF and CR; one byte in `spread` on average
// is drawn from the whole alphabet, the others are 'a'.
std::string RandomText(std::mt19937& rng, std::size_t length, unsigned spread = 1) {
  const char alphabet[] = {'a', '\0', ' ', '\n', '\n', '\r', '\r'};
  std::string text(length, 'a');
  for (char& c : text)
    if (rng() % spread == 0)
      c = alphabet[rng() % sizeof alphabet];
  return text;
}

} // namespace

TEST(TextLinesParser, FinalLineEndLeavesAnEmptyLineCountedInTheLongest) {
  struct Case { const char* text; std::vector<std::string> lines; std::uint64_t longest; };
  const Case cases[] = {
      {"ab\n", {"ab", ""}, 3}, {"ab\r", {"ab", ""}, 3}, {"ab\r\n", {"ab", ""}, 2},
      {"ab\n\r", {"ab", ""}, 2}, {"ab\n\n", {"ab", "", ""}, 4},
      {"abcdef\nab\n", {"abcdef", "ab", ""}, 6}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    TextLinesParser parser;
    parser.AssignCopyOf(c.text);
    EXPECT_THAT(ParserSplit(parser).lines, ElementsAreArray(c.lines));
    EXPECT_EQ(parser.GetLongestLineLength(), c.longest);
    EXPECT_THAT(OracleSplit(c.text).lines, ElementsAreArray(c.lines));
    EXPECT_EQ(OracleSplit(c.text).longest, c.longest);
  }
}

TEST(TextLinesParser, AgreesWithTheOracleOnRandomTexts) {
  // Texts of up to 200 bytes cross the parser's 64-byte blocks; every other
  // text has no CR, which the parser counts by a shorter way.
  std::mt19937 rng(2024);
  const char alphabet[] = {'a', 'b', ' ', '\n', '\n', '\r', '\r'};
  std::uniform_int_distribution<int> withCR(0, sizeof alphabet - 1),
      withoutCR(0, sizeof alphabet - 3), length(0, 200);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (int n = length(rng); n > 0; --n)
      text += alphabet[round % 2 ? withCR(rng) : withoutCR(rng)];
    SCOPED_TRACE(testing::PrintToString(text));
    TextLinesParser parser;
    parser.AssignCopyOf(text.c_str());
    EXPECT_EQ(parser.GetTextLength(), text.size());
    const Split expected = text.empty() ? Split() : OracleSplit(text), got = ParserSplit(parser);
    EXPECT_EQ(parser.IsEmpty(), text.empty());
    ASSERT_EQ(got.lines, expected.lines);
    ASSERT_EQ(got.longest, expected.longest);
  }
  // Files hold zero bytes as text; from 8 MiB on they are mapped, not read.
  TempDir dir;
  for (int round = 0; round < 200; ++round) {
    const std::string text = RandomText(rng, rng() % 200);
    SCOPED_TRACE(testing::PrintToString(text));
    ExpectLoadedLikeTheOracle(dir, text);
  }
  ExpectLoadedLikeTheOracle(dir, RandomText(rng, (std::size_t(8) << 20) + 4099, 50));
}

TEST(TextLinesParser, LoadsNarrowAndWideNamesAndReportsFailures) {
  TempDir dir;
  const std::string text = "first line\r\nsecond\n\nfourth \xC3\xA9\rlast";
  WriteFile(dir / "f \xC3\xA9.txt", text);
  WriteFile(dir / "empty", "");
  TextLinesParser parser, wide;
  std::string error = "stale";
  ASSERT_TRUE(parser.LoadTextFromFile((dir / "f \xC3\xA9.txt").c_str(), error));
  EXPECT_EQ(error, "");
  EXPECT_EQ(parser.GetNumLines(), 5u);
  EXPECT_STREQ(parser.GetLine(3), "fourth \xC3\xA9");
  ASSERT_TRUE(wide.LoadTextFromFile(dir.Wide("f \xC3\xA9.txt").c_str(), error));
  EXPECT_EQ(ParserSplit(wide).lines, ParserSplit(parser).lines);
  error = "stale";
  EXPECT_TRUE(parser.LoadTextFromFile((dir / "empty").c_str(), error));
  EXPECT_EQ(error, "");
  EXPECT_TRUE(parser.IsEmpty());
  EXPECT_EQ(parser.GetNumLines(), 0u);
  EXPECT_EQ(parser.GetLongestLineLength(), 0u);

  struct Case { std::string name; const char* error; };
  const Case cases[] = {{dir / "missing.txt", "No such file or directory"},
                        {dir.path(), "Is a directory"},
                        {"", "No such file or directory"},
                        {dir / std::string(300, 'n'), "File name too long"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    for (const bool asWide : {false, true}) {
      parser.AssignCopyOf("old\ntext");
      EXPECT_FALSE(asWide ? parser.LoadTextFromFile(TarnStringUtil::utf8_to_wide(c.name).c_str(), error)
                          : parser.LoadTextFromFile(c.name.c_str(), error));
      EXPECT_EQ(error, c.error);
      EXPECT_TRUE(parser.IsEmpty());
      EXPECT_EQ(parser.GetNumLines(), 0u);
    }
  }
  EXPECT_FALSE(parser.LoadTextFromFile(static_cast<const char*>(nullptr), error));
  EXPECT_EQ(error, "Invalid argument");
  EXPECT_FALSE(parser.LoadTextFromFile(static_cast<const char16_t*>(nullptr)));

  tarn_test::OpenToEveryone(dir);
  ::chmod((dir / "empty").c_str(), 0600);
  EXPECT_TRUE(tarn_test::RunUnprivileged([&dir] {
    TextLinesParser parser;
    std::string error;
    return !parser.LoadTextFromFile((dir / "empty").c_str(), error) &&
           error == "Permission denied" && parser.IsEmpty();
  }));
}

TEST(TextLinesParser, ReloadReusesTheBufferOnlyForTheSameSize) {
  TempDir dir;
  WriteFile(dir / "a", "aaa\nbbb");
  WriteFile(dir / "b", "ccc\rddd");
  WriteFile(dir / "c", "a much longer text\nwith\nthree lines");
  // Same size as "c", different number of lines.
  WriteFile(dir / "d", std::string(34, '\n') + "x");
  TextLinesParser parser;
  ASSERT_TRUE(parser.LoadTextFromFile((dir / "a").c_str()));
  const char* const firstBuffer = parser.GetLine(0);
  ASSERT_TRUE(parser.LoadTextFromFile((dir / "b").c_str()));
  EXPECT_EQ(parser.GetLine(0), firstBuffer);
  EXPECT_STREQ(parser.GetLine(1), "ddd");
  ASSERT_TRUE(parser.LoadTextFromFile((dir / "c").c_str()));
  EXPECT_STREQ(parser.GetLine(2), "three lines");
  EXPECT_EQ(parser.GetTextLength(), 35u);
  ASSERT_TRUE(parser.LoadTextFromFile((dir / "d").c_str()));
  EXPECT_EQ(parser.GetNumLines(), 35u);
  EXPECT_STREQ(parser.GetLine(34), "x");
}
