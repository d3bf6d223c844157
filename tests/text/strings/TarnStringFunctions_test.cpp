//===- TarnStringFunctions_test.cpp - Word and line helpers -----------------===//
#include "TarnUtilities/text/TarnStringFunctions.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <thread>
#include <vector>

TEST(TarnStringFunctions, FirstWord) {
  struct Case { const char* s; std::size_t pos; const char* word; };
  const Case cases[] = {
      {"abc def", 0, "abc"}, {"  abc def", 0, "abc"}, {"ab cd,ef", 3, "cd"}, {"", 0, ""},
      {"abc", 99, ""}, {"a,b c", 0, "a"},
      {"abcdefgh", 2, "cdef"}, // without a delimiter the count s.size()-pos is the end
      {"abc def", 4, "def"},   // the end falls before the start: to the end
      {"abc def", 3, ""},      // the space is skipped, end 4 - start 4
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << '"' << c.s << "\" at " << c.pos);
    EXPECT_EQ(get_first_word(c.s, c.pos), c.word);
  }
}

TEST(TarnStringFunctions, GetlineAcceptsDosAndUnixEnds) {
  std::istringstream in("a\r\nb\n\r\n\r\r\nc");
  const std::int32_t before = g_DosUnixLinesLoaded;
  std::vector<std::string> lines;
  std::string line;
  while (getline_dosunix(in, line))
    lines.push_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"a", "b", "", "\r", "c"}));
  // Five lines read and one call that met the end.
  EXPECT_EQ(g_DosUnixLinesLoaded - before, 6);
}

TEST(TarnStringFunctions, GetlineCounterCountsEveryCallFromEveryThread) {
  const std::int32_t before = g_DosUnixLinesLoaded;
  auto reader = [] {
    std::istringstream in(std::string(2000, '\n'));
    std::string line;
    while (getline_dosunix(in, line)) {
    }
  };
  std::thread t1(reader), t2(reader);
  t1.join();
  t2.join();
  EXPECT_EQ(g_DosUnixLinesLoaded - before, 2 * 2001);
}

TEST(TarnStringFunctions, TokenDivideIntoBoundedArray) {
  std::string out[4] = {"s0", "s1", "s2", "s3"};
  EXPECT_EQ(s_token_divide("a b  c", out, 4, " "), 3);
  EXPECT_EQ(out[0], "a");
  EXPECT_EQ(out[1], "b");
  EXPECT_EQ(out[2], "c");
  EXPECT_EQ(out[3], "s3");

  std::string small[2] = {"s0", "s1"};
  EXPECT_EQ(s_token_divide("x,y,z", small, 2, ","), 3); // counted, not stored
  EXPECT_EQ(small[0], "x");
  EXPECT_EQ(small[1], "y");

  std::string untouched[1] = {"keep"};
  EXPECT_EQ(s_token_divide("", untouched, 1, " "), 0);
  EXPECT_EQ(untouched[0], "keep");
  EXPECT_EQ(s_token_divide("p q", nullptr, 0, " "), 2);
}

TEST(TarnStringFunctions, TokenDivideIntoVector) {
  std::vector<std::string> out = {"stale", "stale", "stale", "stale"};
  EXPECT_EQ(s_token_divide(" one\ttwo ", out, " \t"), 2);
  EXPECT_EQ(out, (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(s_token_divide("", out, " "), 0);
  EXPECT_TRUE(out.empty());
}
