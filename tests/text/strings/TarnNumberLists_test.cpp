//===- TarnNumberLists_test.cpp - Lists of numbers as text ------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

// Reads a list text back: each ", "-separated item is a number or a range
// "first-last" (the '-' that is not a sign); ranges are expanded.
std::vector<int> Expand(const std::string& text, std::size_t& ranges) {
  std::vector<int> values;
  ranges = 0;
  std::size_t begin = 0;
  while (begin < text.size()) {
    std::size_t end = text.find(", ", begin);
    if (end == std::string::npos)
      end = text.size();
    const std::string item = text.substr(begin, end - begin);
    const std::size_t dash = item.find('-', 1);
    const long first = std::strtol(item.c_str(), nullptr, 10);
    const long last = dash == std::string::npos ? first : std::strtol(item.c_str() + dash + 1, nullptr, 10);
    EXPECT_TRUE(dash == std::string::npos || last - first >= 2) << "range of fewer than 3: " << item;
    ranges += dash != std::string::npos;
    for (long v = first; v <= last; ++v)
      values.push_back(static_cast<int>(v));
    begin = end + 2;
  }
  return values;
}

} // namespace

TEST(TarnNumberLists, IntegerRunsOfThreeOrMoreBecomeRanges) {
  struct Case {
    std::vector<int> values;
    const char* text;
  };
  const int kMax = std::numeric_limits<int>::max();
  const int kMin = std::numeric_limits<int>::min();
  const Case cases[] = {
      {{1, 2, 3, 4, 5, 7, 9, 10, 11, 12}, "1-5, 7, 9-12"},
      {{7, 8, 3}, "7, 8, 3"},
      {{-3, -2, -1}, "-3--1"},
      {{5, 5, 5}, "5, 5, 5"},
      {{1, 2, 3, 2, 3, 4}, "1-3, 2-4"},
      {{kMax - 2, kMax - 1, kMax, kMin}, "2147483645-2147483647, -2147483648"},
      {{}, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(TarnFormatUtil::int_list_to_str(c.values.data(), c.values.size()), c.text);
  }
}

// Random lists with many runs read back as the same values, with every run
// of three or more written as one range.
TEST(TarnNumberLists, IntegerListsReadBackAsTheSameValues) {
  std::mt19937 random(3);
  for (int trial = 0; trial < 300; ++trial) {
    std::vector<int> values;
    std::size_t runs = 0;
    while (values.size() < 40) {
      const int start = static_cast<int>(random() % 200) - 100;
      const int length = static_cast<int>(random() % 5) + 1;
      if (!values.empty() && (start == values.back() + 1 || start == values.back()))
        continue; // keep the runs apart, so that each is counted once
      for (int i = 0; i < length; ++i)
        values.push_back(start + i);
      runs += length >= 3;
    }
    std::size_t ranges = 0;
    const std::string text = TarnFormatUtil::int_list_to_str(values.data(), values.size());
    EXPECT_EQ(Expand(text, ranges), values) << text;
    EXPECT_EQ(ranges, runs) << text;
  }
}

TEST(TarnNumberLists, DoublesInShortestRoundTripText) {
  const double values[] = {0.1, 2.0, 1e5, -HUGE_VAL, std::nan(""), -0.0};
  EXPECT_EQ(TarnFormatUtil::double_list_to_str(values, 6), "0.1, 2.0, 1.0e+5, -Inf, NaN, -0.0");
  EXPECT_EQ(TarnFormatUtil::double_list_to_str(values, 0), "");
  std::mt19937_64 random(5);
  std::vector<double> many;
  while (many.size() < 500) {
    const std::uint64_t bits = random();
    double x;
    std::memcpy(&x, &bits, sizeof x);
    if (std::isfinite(x))
      many.push_back(x);
  }
  const std::string text = TarnFormatUtil::double_list_to_str(many.data(), many.size());
  const char* p = text.c_str();
  for (double x : many) {
    char* end = nullptr;
    EXPECT_EQ(std::strtod(p, &end), x);
    p = *end ? end + 2 : end;
  }
  EXPECT_EQ(*p, '\0');
}
