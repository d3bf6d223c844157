//===- KMeansPlusPlus1D_test.cpp - Sorting, iteration, statistics -----------===//
#include "numerics/KMeansTestSupport.h"

#include <limits>

using namespace kmeans_test;
constexpr double kNaN = NAN, kInf = INFINITY;

TEST(KMeansPlusPlus1D, SortsAndCountsDistinctValues) {
  KMeansPlusPlus1D km({3, kNaN, 1, -0.0, 3, kNaN, 0.0, -kInf});
  EXPECT_EQ(km.GetNumPoints(), 8u);
  // -0 == 0 and 3 == 3 count once; each NaN counts on its own.
  EXPECT_EQ(km.GetNumDistinctValues(), 6u);
  const Values& s = km.GetSortedValues();
  EXPECT_EQ(Values(s.begin(), s.begin() + 5), (Values{-kInf, -0.0, 0.0, 1, 3}));
  EXPECT_TRUE(std::signbit(s[1]) && !std::signbit(s[2])) << "equal values keep input order";
  EXPECT_TRUE(std::isnan(s[6]) && std::isnan(s[7]));
}

TEST(KMeansPlusPlus1D, ConvergedClusteringsAreConsistent) {
  std::mt19937 rng(11);
  for (int round = 0; round < 400; ++round) {
    const std::size_t n = 1 + rng() % 60, k = 1 + rng() % 8;
    Values values(n);
    for (double& v : values)
      v = round % 3 == 0 ? double(rng() % 12) : std::normal_distribution<>(rng() % 4 * 10.0, 3)(rng);
    const bool advanced = round % 2 == 0;
    SCOPED_TRACE(testing::Message() << "round " << round << " k " << k);
    const Result r = Cluster(values, k, 1000, advanced);
    const Info& info = r.info;
    ASSERT_LT(info.numIterations, 1000u);
    ASSERT_EQ(r.assignment.size(), n);
    ASSERT_EQ(r.centers.size(), info.numClusters);
    // Each value sits with a nearest center, the lower one on a tie; each
    // center is the mean of its non-empty cluster.
    Values sum(r.centers.size());
    std::vector<std::size_t> count(r.centers.size());
    double squares = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const std::size_t c = r.assignment[i];
      ASSERT_LT(c, r.centers.size());
      for (std::size_t j = 0; j < r.centers.size(); ++j) {
        const double d = std::fabs(values[i] - r.centers[j]), own = std::fabs(values[i] - r.centers[c]);
        EXPECT_TRUE(d > own || (d == own && j >= c)) << "value " << i << " center " << j;
      }
      sum[c] += values[i];
      ++count[c];
      squares += std::pow(values[i] - r.centers[c], 2);
    }
    for (std::size_t c = 0; c < r.centers.size(); ++c) {
      ASSERT_GT(count[c], 0u);
      EXPECT_NEAR(r.centers[c], sum[c] / count[c], 1e-12 * (1 + std::fabs(r.centers[c])));
    }
    const Values distinct = Distinct(values);
    EXPECT_TRUE(info.numPoints == n && info.maxIterations == 1000u);
    EXPECT_EQ(info.numDistinctValues, distinct.size());
    EXPECT_NEAR(info.spread, std::sqrt(squares / r.centers.size()), 1e-9);
    EXPECT_DOUBLE_EQ(info.meanClusterSize, double(n) / r.centers.size());
    EXPECT_TRUE(info.minValue == distinct.front() && info.maxValue == distinct.back());
    if (k >= distinct.size() && advanced)
      EXPECT_EQ(r.centers, distinct);
  }
}

TEST(KMeansPlusPlus1D, IterationLimitKeepsTheNewestAssignment) {
  // Seeds 2 and 9 (medoids of 0..4 and 5..9, 100) take 0..5 and 6..9, 100;
  // one update moves them to 2.5 and 26, which take 0..9 and 100, whose
  // means 4.5 and 100 keep that assignment.
  const Values values{9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 100};
  struct Row {
    std::size_t limit, iterations;
    Values centers;
    std::size_t clusterOfNine;
  };
  for (const Row& row : {Row{0, 0, {2.5, 26}, 1}, Row{1, 1, {4.5, 100}, 0}, Row{9, 2, {4.5, 100}, 0}}) {
    SCOPED_TRACE(row.limit);
    const Result r = Cluster(values, 2, row.limit);
    EXPECT_EQ(r.info.numIterations, row.iterations);
    EXPECT_EQ(r.centers, row.centers);
    EXPECT_TRUE(r.assignment[0] == row.clusterOfNine && r.assignment[10] == 1u);
  }
}

TEST(KMeansPlusPlus1D, BadInputHasDefinedResults) {
  const auto refused = [](const Values& values, std::size_t k, bool seed) {
    KMeansPlusPlus1D km(values);
    Result r;
    r.centers = {42};
    return tarn_test::FailureMessage([&] {
      if (seed)
        km.SeedCentersAdvanced(k);
      km.CreateClusters(5, r.centers, r.assignment, r.info);
    }) + (r.centers == Values{42} ? "" : " (outputs changed)");
  };
  EXPECT_EQ(refused({1, kNaN, 2}, 2, true),
            "SeedCentersAdvanced: the value at input index 1 is NaN; only finite values can be clustered.");
  EXPECT_EQ(refused({1, -kInf, kInf}, 2, false),
            "CreateClusters: the value at input index 1 is -Inf; only finite values can be clustered.");
  const std::string unseeded = "CreateClusters: no cluster centers are seeded; call SeedCentersSimple "
                               "or SeedCentersAdvanced with k >= 1 first.";
  EXPECT_EQ(refused({1, 2}, 0, false), unseeded);
  EXPECT_EQ(refused({1, 2}, 0, true), unseeded);
  KMeansPlusPlus1D simple({1, 2});
  simple.SeedCentersSimple(0);
  EXPECT_TRUE(simple.GetSeededCenters().empty());

  // No values: nothing to seed or cluster, a zero record, quality 0.
  const Result none = Cluster({}, 3, 7);
  EXPECT_TRUE(none.centers.empty() && none.assignment.empty());
  EXPECT_EQ(none.info.maxIterations, 7u);
  EXPECT_EQ(none.info.numIterations, 1u) << "the first pass finds the empty assignment repeated";
  EXPECT_EQ(none.info.numClusters + none.info.numPoints + none.info.numDistinctValues, 0u);
  EXPECT_EQ(KMeansPlusPlus1D::CalculateQualityFactor(none.info), 0.0);
  // All values equal: one center, spread 0, quality 1, with either seeding.
  for (bool advanced : {true, false}) {
    const Result same = Cluster(Values(5, 2.5), 3, 10, advanced);
    EXPECT_EQ(same.centers, Values{2.5});
    EXPECT_EQ(same.assignment, std::vector<std::size_t>(5, 0));
    EXPECT_TRUE(same.info.spread == 0.0 && KMeansPlusPlus1D::CalculateQualityFactor(same.info) == 1.0);
  }
  // Sums beyond the largest double: centers, spread and quality stay finite.
  const double big = std::numeric_limits<double>::max();
  const Result sum = Cluster({big, big, big / 2}, 1, 10);
  EXPECT_DOUBLE_EQ(sum.centers[0], big / 6 * 5);
  EXPECT_DOUBLE_EQ(sum.info.spread, big / std::sqrt(6.0));
  const Result range = Cluster({-0.625 * big, 0.625 * big}, 1, 10);
  EXPECT_EQ(range.centers[0], 0.0);
  EXPECT_DOUBLE_EQ(KMeansPlusPlus1D::CalculateQualityFactor(range.info), 1 - std::sqrt(0.5));
}

TEST(KMeansPlusPlus1D, QualityFactor) {
  // 1 - spread / range with clusters, distinct values and a range; else 1
  // for one distinct value, 0 otherwise.
  struct Row {
    std::uint64_t clusters, distinct;
    double spread, min, max, quality;
  };
  for (const Row& r : {Row{1, 5, 8.0, 0, 4, -1.0}, Row{0, 5, 1, 0, 4, 0}, Row{2, 0, 1, 0, 4, 0},
                       Row{1, 1, 0, 3, 3, 1}, Row{2, 2, 1, 4, 0, 0}, Row{1, 1, 1, 0, 4, 0.75}}) {
    Info info;
    info.numClusters = r.clusters;
    info.numDistinctValues = r.distinct;
    info.spread = r.spread;
    info.minValue = r.min;
    info.maxValue = r.max;
    EXPECT_EQ(KMeansPlusPlus1D::CalculateQualityFactor(info), r.quality) << r.clusters << " " << r.distinct;
  }
}
