//===- TextLinesParser_test.cpp - Whole-file lines --------------------------===//
//
// An oracle: a direct transcription of the two-bit-set description of the
// split (mark line starts and ends, then cut), run against the parser over
// documented and random texts of ordinary characters, zero, CR and LF, in
// memory and from real files.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TextLinesParser.h"
#include "system/FileTestHelpers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <sys/stat.h>
#include <vector>

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
  Split split;
  const std::size_t n = text.size();
  if (n == 0)
    return split;
  std::vector<bool> starts(n + 1), ends(n + 1);
  starts[0] = ends[n] = true;
  char state = 0;
  std::size_t lineStart = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const char c = text[i];
    if (c != '\n' && c != '\r') {
      if (state != 0)
        starts[i] = true, lineStart = i, state = 0;
    } else if (state == 0) {
      ends[i] = true;
      split.longest = std::max<std::uint64_t>(split.longest, i - lineStart);
      state = c;
    } else if (c != state) {
      starts[i + 1] = true, lineStart = i + 1, state = 0;
    } else {
      starts[i] = ends[i] = true;
    }
  }
  starts[n] = starts[n] || state != 0;
  split.longest = std::max<std::uint64_t>(split.longest, n - lineStart);
  for (std::size_t i = 0, last = 0; i <= n; ++i) {
    last = starts[i] ? i : last;
    if (ends[i])
      split.lines.push_back(text.substr(last, i - last)), split.starts.push_back(last);
  }
  return split;
}

// Every line against the oracle by its place in the buffer, its bytes and
// the zero that ends it, so that zero bytes inside a line count as text.
void ExpectLikeTheOracle(const TextLinesParser& parser, const std::string& text) {
  SCOPED_TRACE(testing::PrintToString(text.substr(0, 300)));
  const Split expected = OracleSplit(text);
  EXPECT_EQ(parser.GetTextLength(), text.size());
  EXPECT_EQ(parser.IsEmpty(), text.empty());
  ASSERT_EQ(parser.GetNumLines(), expected.lines.size());
  EXPECT_EQ(parser.GetLongestLineLength(), expected.longest);
  for (std::size_t i = 0; i < expected.lines.size(); ++i) {
    const std::string& line = expected.lines[i];
    const char* got = parser.GetLine(i);
    ASSERT_EQ(static_cast<std::size_t>(got - parser.GetLine(0)), expected.starts[i]) << i;
    ASSERT_EQ(std::string(got, line.size() + 1), line + '\0') << i;
  }
}

} // namespace

TEST(TextLinesParser, AgreesWithTheOracleOnDocumentedAndRandomTexts) {
  // A final line end leaves an empty line, counted in the longest.
  struct Case { const char* text; std::vector<std::string> lines; std::uint64_t longest; };
  const Case cases[] = {
      {"ab\n", {"ab", ""}, 3}, {"ab\r", {"ab", ""}, 3}, {"ab\r\n", {"ab", ""}, 2},
      {"ab\n\r", {"ab", ""}, 2}, {"ab\n\n", {"ab", "", ""}, 4}, {"abcdef\nab\n", {"abcdef", "ab", ""}, 6}};
  for (const Case& c : cases) {
    EXPECT_EQ(OracleSplit(c.text).lines, c.lines) << c.text;
    EXPECT_EQ(OracleSplit(c.text).longest, c.longest) << c.text;
    TextLinesParser parser;
    parser.AssignCopyOf(c.text);
    ExpectLikeTheOracle(parser, c.text);
  }
  // Texts of up to 200 bytes cross the parser's 64-byte blocks; every other
  // text has no CR, which the parser counts by a shorter way.
  std::mt19937 rng(2024);
  const char alphabet[] = {'a', 'b', ' ', '\n', '\n', '\r', '\r'};
  for (int round = 0; round < 3000; ++round) {
    std::string text(rng() % 201, 'a');
    for (char& c : text)
      c = alphabet[rng() % (round % 2 ? 7 : 5)];
    TextLinesParser parser;
    parser.AssignCopyOf(text.c_str());
    ExpectLikeTheOracle(parser, text);
  }
  // Files hold zero bytes as text; from 8 MiB on they are mapped, not read.
  TempDir dir;
  for (int round = 0; round <= 200; ++round) {
    // One byte in `spread` on average is not 'a'.
    const unsigned spread = round == 200 ? 50 : 1;
    std::string text(round == 200 ? (std::size_t(8) << 20) + 4099 : rng() % 200, 'a');
    for (char& c : text)
      if (rng() % spread == 0)
        c = "a\0 \n\n\r\r"[rng() % 7];
    WriteFile(dir / "t", text);
    TextLinesParser parser;
    ASSERT_TRUE(parser.LoadTextFromFile((dir / "t").c_str()));
    ExpectLikeTheOracle(parser, text);
  }
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
  EXPECT_STREQ(parser.GetLine(3), "fourth \xC3\xA9");
  ASSERT_TRUE(wide.LoadTextFromFile(dir.Wide("f \xC3\xA9.txt").c_str(), error));
  ExpectLikeTheOracle(wide, text);
  error = "stale";
  EXPECT_TRUE(parser.LoadTextFromFile((dir / "empty").c_str(), error));
  EXPECT_EQ(error, "");
  ExpectLikeTheOracle(parser, "");

  struct Case { std::string name; const char* error; };
  const Case cases[] = {{dir / "missing.txt", "No such file or directory"},
                        {dir.path(), "Is a directory"}, {"", "No such file or directory"},
                        {dir / std::string(300, 'n'), "File name too long"}};
  for (const Case& c : cases) {
    for (const bool asWide : {false, true}) {
      SCOPED_TRACE(c.name + (asWide ? " wide" : ""));
      parser.AssignCopyOf("old\ntext");
      EXPECT_FALSE(asWide ? parser.LoadTextFromFile(tarn_test::Wide(c.name).c_str(), error)
                          : parser.LoadTextFromFile(c.name.c_str(), error));
      EXPECT_EQ(error, c.error);
      ExpectLikeTheOracle(parser, "");
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
  // "b" is as long as "a"; "d" is as long as "c" with more lines.
  const std::string texts[] = {"aaa\nbbb", "ccc\rddd", "a much longer text\nwith\nthree lines",
                               std::string(34, '\n') + "x"};
  TextLinesParser parser;
  for (const std::string& text : texts) {
    WriteFile(dir / "t", text);
    const char* const before = parser.IsEmpty() ? nullptr : parser.GetLine(0);
    ASSERT_TRUE(parser.LoadTextFromFile((dir / "t").c_str()));
    ExpectLikeTheOracle(parser, text);
    if (text == texts[1]) {
      EXPECT_EQ(parser.GetLine(0), before);
    }
  }
}
