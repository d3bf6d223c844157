//===- TarnAlgorithmUtil_test.cpp - Uniform intervals and radix sort --------===//
#include "TarnUtilities/math/TarnAlgorithmUtil.h"
#include "math/MathTestSupport.h"

#include <climits>

using TarnAlgorithmUtil::GenerateUniformIntervals;
using Bounds = std::vector<std::size_t>;

TEST(TarnAlgorithmUtil, UniformIntervalsSpreadLeftoversEvenly) {
  Bounds b;
  GenerateUniformIntervals(10, 3, b);
  EXPECT_EQ(b, (Bounds{0, 3, 7, 10}));
  // Runs of q or q+1 items, exactly r long ones, and every prefix of k runs
  // within one item of k*total/parts.
  for (std::size_t total = 0; total < 40; ++total)
    for (std::size_t parts = 1; parts < 12; ++parts) {
      SCOPED_TRACE(testing::Message() << total << " in " << parts);
      GenerateUniformIntervals(total, parts, b);
      ASSERT_EQ(b.size(), parts + 1);
      EXPECT_EQ(b.back(), total);
      std::size_t longRuns = 0;
      for (std::size_t i = 0; i < parts; ++i) {
        const std::size_t run = b[i + 1] - b[i];
        EXPECT_TRUE(run == total / parts || run == total / parts + 1) << i;
        longRuns += run != total / parts;
        EXPECT_LE(std::abs(double(b[i]) - double(i) * total / parts), 1.0) << i;
      }
      EXPECT_EQ(longRuns, total % parts);
    }
  b = {1, 2};
  EXPECT_EQ(tarn_test::FailureMessage([&] { GenerateUniformIntervals(5, 0, b); }),
            "Cannot split 5 items into 0 intervals.");
  EXPECT_EQ(b, (Bounds{1, 2}));
}

TEST(TarnAlgorithmUtil, RadixSortAgreesWithStdSort) {
  std::mt19937 rng(7);
  auto random = [&](std::size_t n, int lo, int hi) {
    std::vector<int> v(n);
    for (int& x : v)
      x = std::uniform_int_distribution<int>(lo, hi)(rng);
    return v;
  };
  std::vector<int> sorted = random(3000, 0, INT_MAX), negative = random(5000, 0, INT_MAX);
  std::sort(sorted.begin(), sorted.end());
  negative[2500] = -1;
  const std::vector<std::vector<int>> cases = {
      {}, {42}, random(100000, 0, INT_MAX), sorted, {sorted.rbegin(), sorted.rend()},
      std::vector<int>(1000, 77), negative,
      random(50000, 1 << 20, (1 << 20) + 3000), // shares the top bytes: deep recursion
      random(64, 0, 255), random(65, 0, 255),     // one bucket below and at the threshold
      random(65 * 128, 0, INT_MAX)};
  for (std::size_t c = 0; c < cases.size(); ++c) {
    std::vector<int> v = cases[c], expected = cases[c];
    std::sort(expected.begin(), expected.end());
    TarnAlgorithmUtil::radix_sort_ascending(v.data(), v.size());
    EXPECT_EQ(v, expected) << "case " << c;
  }
}
