//===- KMeansTestSupport.h - Includes and helpers of the k-means tests -----===//
#ifndef TARN_TESTS_NUMERICS_KMEANSTESTSUPPORT_H
#define TARN_TESTS_NUMERICS_KMEANSTESTSUPPORT_H

#include "TarnUtilities/numerics/KMeansPlusPlus1D.h"
#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <vector>

namespace kmeans_test {

using Values = std::vector<double>;
using Info = KMeansPlusPlus1D::CLUSTERING_INFO;

/// The distinct values in ascending order.
inline Values Distinct(Values v) {
  std::sort(v.begin(), v.end());
  v.erase(std::unique(v.begin(), v.end()), v.end());
  return v;
}

struct Result {
  Values centers;
  std::vector<std::size_t> assignment;
  Info info;
};

/// Seeds k centers (deterministically or at random) and iterates.
inline Result Cluster(const Values& values, std::size_t k, std::size_t limit, bool advanced = true) {
  KMeansPlusPlus1D km(values);
  advanced ? km.SeedCentersAdvanced(k) : km.SeedCentersSimple(k);
  Result r;
  km.CreateClusters(limit, r.centers, r.assignment, r.info);
  return r;
}

} // namespace kmeans_test

#endif // TARN_TESTS_NUMERICS_KMEANSTESTSUPPORT_H
