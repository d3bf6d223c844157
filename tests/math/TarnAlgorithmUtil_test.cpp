//===- TarnAlgorithmUtil_test.cpp - Uniform intervals and radix sort --------===//
#include "TarnUtilities/math/TarnAlgorithmUtil.h"
#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <vector>

using TarnAlgorithmUtil::GenerateUniformIntervals;
using Bounds = std::vector<std::size_t>;

TEST(TarnAlgorithmUtil, UniformIntervalsSpreadLeftoversEvenly) {
  Bounds b;
  GenerateUniformIntervals(10, 3, b);
  EXPECT_EQ(b, (Bounds{0, 3, 7, 10}));
  GenerateUniformIntervals(10, 4, b);
  EXPECT_EQ(b, (Bounds{0, 2, 5, 7, 10}));
  GenerateUniformIntervals(2, 4, b);
  EXPECT_EQ(b, (Bounds{0, 0, 1, 1, 2}));
  // Properties: runs of q or q+1 items, exactly r long ones, any prefix of
  // k runs holds about k*total/parts items (Bresenham: within one).
  for (std::size_t total = 0; total < 40; ++total)
    for (std::size_t parts = 1; parts < 12; ++parts) {
      SCOPED_TRACE(testing::Message() << total << " in " << parts);
      GenerateUniformIntervals(total, parts, b);
      ASSERT_EQ(b.size(), parts + 1);
      EXPECT_EQ(b.front(), 0u);
      EXPECT_EQ(b.back(), total);
      std::size_t longRuns = 0;
      for (std::size_t i = 0; i < parts; ++i) {
        const std::size_t run = b[i + 1] - b[i];
        EXPECT_TRUE(run == total / parts || run == total / parts + 1) << i;
        longRuns += run != total / parts;
        const double ideal = double(i) * total / parts;
        EXPECT_LE(std::abs(double(b[i]) - ideal), 1.0) << i;
      }
      EXPECT_EQ(longRuns, total % parts);
    }
}

TEST(TarnAlgorithmUtil, ZeroPartsFailAndKeepTheBounds) {
  Bounds b{1, 2};
  EXPECT_EQ(tarn_test::FailureMessage([&] { GenerateUniformIntervals(5, 0, b); }),
            "Cannot split 5 items into 0 intervals.");
  EXPECT_EQ(b, (Bounds{1, 2}));
}

TEST(TarnAlgorithmUtil, RadixSortAgreesWithStdSort) {
  std::mt19937 rng(7);
  auto random = [&](std::size_t n, int lo, int hi) {
    std::uniform_int_distribution<int> d(lo, hi);
    std::vector<int> v(n);
    for (int& x : v)
      x = d(rng);
    return v;
  };
  struct Case {
    const char* name;
    std::vector<int> values;
  };
  std::vector<Case> cases = {
      {"empty", {}},
      {"one", {42}},
      {"random", random(100000, 0, INT_MAX)},
      {"narrow range, deep recursion", random(50000, 1 << 20, (1 << 20) + 3000)},
      {"all equal", std::vector<int>(1000, 77)},
      {"one negative", random(5000, 0, INT_MAX)},
      {"64 in one bucket", random(64, 0, 255)},
      {"65 in one bucket", random(65, 0, 255)},
      {"65 on each top byte", random(65 * 128, 0, INT_MAX)},
  };
  cases[5].values[2500] = -1;
  std::vector<int> sorted = random(3000, 0, INT_MAX);
  std::sort(sorted.begin(), sorted.end());
  cases.push_back({"sorted", sorted});
  cases.push_back({"reversed", std::vector<int>(sorted.rbegin(), sorted.rend())});
  for (Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<int> expected = c.values;
    std::sort(expected.begin(), expected.end());
    TarnAlgorithmUtil::radix_sort_ascending(c.values.data(), c.values.size());
    EXPECT_EQ(c.values, expected);
  }
}
