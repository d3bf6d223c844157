//===- KMeansSeeding_test.cpp - Random and deterministic seeding ------------===//
#include "TarnUtilities/math/TarnAlgorithmUtil.h"
#include "numerics/KMeansTestSupport.h"

using namespace kmeans_test;

namespace {

Values Advanced(const Values& values, std::size_t k) {
  KMeansPlusPlus1D km(values);
  km.SeedCentersAdvanced(k);
  return km.GetSeededCenters();
}

} // namespace

TEST(KMeansSeeding, AdvancedTakesTheMedoidOfEachRun) {
  std::mt19937 rng(3);
  for (int round = 0; round < 300; ++round) {
    // Integers of magnitude below 2^10, so the brute-force sums below are
    // exact; with both signs the exact sums cross zero.
    Values values(1 + rng() % 80);
    for (double& v : values)
      v = round % 2 ? double(rng() % 1000) - 500 : double(rng() % 30);
    const Values distinct = Distinct(values);
    const std::size_t k = 1 + rng() % (distinct.size() + 1);
    SCOPED_TRACE(testing::Message() << "round " << round << " k " << k);
    Values expected = distinct;
    if (k < distinct.size()) {
      std::vector<std::size_t> b;
      TarnAlgorithmUtil::GenerateUniformIntervals(distinct.size(), k, b);
      expected.clear();
      for (std::size_t r = 0; r < k; ++r) {
        double best = 0, bestSum = INFINITY;
        for (std::size_t i = b[r]; i < b[r + 1]; ++i) {
          double sum = 0;
          for (std::size_t j = b[r]; j < b[r + 1]; ++j)
            sum += (distinct[j] - distinct[i]) * (distinct[j] - distinct[i]);
          if (sum < bestSum)
            best = distinct[i], bestSum = sum;
        }
        expected.push_back(best);
      }
    }
    EXPECT_EQ(Advanced(values, k), expected);
  }
  // A tie goes to the lower value.
  EXPECT_EQ(Advanced({4, 3, 2, 1, 1}, 1), Values{2});
  // 0.4 and 0.7 look equally far from the decimal mean 0.55, but as doubles
  // 0.7 is nearer to the exact mean; a rounded double sum picks 0.4.
  EXPECT_EQ(Advanced({0.2, 0.4, 0.7, 0.9}, 1), Values{0.7});
}

TEST(KMeansSeeding, SimpleDrawsWithoutReplacement) {
  std::mt19937 rng(8);
  for (int round = 0; round < 40; ++round) {
    Values values(round == 0 ? 100000 : 1 + rng() % 200);
    for (double& v : values)
      v = double(rng() % (round % 3 ? 50 : 300));
    const Values distinct = Distinct(values);
    const std::size_t k = 1 + rng() % (distinct.size() + 3);
    SCOPED_TRACE(testing::Message() << "round " << round << " k " << k);
    const unsigned seed = rng();
    // The draw on a sorted list of candidates that loses every copy of a
    // chosen value.
    std::srand(seed);
    Values candidates = values, expected;
    std::sort(candidates.begin(), candidates.end());
    while (expected.size() < std::min(k, distinct.size())) {
      const double draw = double(std::rand() % 32768);
      const double x = candidates[std::size_t(candidates.size() * draw / 32768)];
      expected.push_back(x);
      candidates.erase(std::remove(candidates.begin(), candidates.end(), x), candidates.end());
    }
    std::sort(expected.begin(), expected.end());
    KMeansPlusPlus1D km(values);
    std::srand(seed);
    km.SeedCentersSimple(k);
    EXPECT_EQ(km.GetSeededCenters(), expected);
  }
}
