//===- TarnFormatUtil_HardCases_test.cpp - Hard decimal-to-double cases ---===//
//
// Runs the cases of tests/text/strings/data/decimal_hard_cases.txt through
// str_to_double: exact midpoints between doubles and their cuts and nudges,
// texts beyond 800 digits, the limits of the double range. The file is made
// by scripts/gen_decimal_hard_cases.py with exact rational arithmetic, so it
// is an oracle independent of the C library. One case per line:
//
//   3FF0000000000000 1.0    expected bits in hex, then the text
//
// Lines starting with '#' are comments. Every case must give its bits and
// be read to its end.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

TEST(TarnFormatUtilHardCases, CaseFileReadsWhole) {
  std::ifstream in(TARN_SOURCE_DIR "/tests/text/strings/data/decimal_hard_cases.txt");
  ASSERT_TRUE(in.good());
  std::string line;
  long cases = 0;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#')
      continue;
    ++cases;
    ASSERT_GT(line.size(), 17u) << line;
    const std::uint64_t expected = std::strtoull(line.substr(0, 16).c_str(), nullptr, 16);
    const std::string text = line.substr(17);
    const char* end = nullptr;
    const double value = TarnFormatUtil::str_to_double(text.c_str(), &end);
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    EXPECT_EQ(bits, expected) << text;
    EXPECT_EQ(*end, '\0') << text;
  }
  EXPECT_GT(cases, 800);
}
