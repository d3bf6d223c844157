//===- KMeansPlusPlus1D.cpp - Sorting, the iteration, the statistics --------===//
//
// The constructor sorts the values once; CreateClusters alternates the two
// steps of numerics/KMeansSteps.h on the sorted values with buffers
// allocated once per call, and writes the result back in input order.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/numerics/KMeansPlusPlus1D.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "numerics/KMeansSteps.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

using tarn_detail::kUnassigned;

namespace {

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

/// Sum of (v - center)^2 over the sorted values, each against the final
/// center of its cluster (cluster[i] is an index before the last update,
/// remap turns it into an index into centers). When the sum overflows it is
/// redone on values and centers scaled down by 2^-600, which keeps the
/// squares of differences of any two finite doubles (below 2^1025, scaled
/// below 2^425) and their sum finite; the result is then scaled back, and
/// only a spread truly beyond the largest double is +infinity.
double SquaredSpreadSum(const std::vector<double>& values, const std::vector<std::size_t>& cluster,
                        const std::vector<std::size_t>& remap, const std::vector<double>& centers,
                        double* scale) {
  double sum = 0.0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double d = values[i] - centers[remap[cluster[i]]];
    sum += d * d;
  }
  *scale = 1.0;
  if (std::isfinite(sum))
    return sum;
  const double down = std::ldexp(1.0, -600);
  sum = 0.0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double d = values[i] * down - centers[remap[cluster[i]]] * down;
    sum += d * d;
  }
  *scale = std::ldexp(1.0, 600);
  return sum;
}

} // namespace

KMeansPlusPlus1D::KMeansPlusPlus1D(const std::vector<double>& values) : firstNonFinite_(kNone) {
  const std::size_t n = values.size();
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), std::size_t(0));
  // NaN has no place in the order of operator<, and std::sort with it is
  // undefined: NaN values go to the end in input order, the rest is sorted
  // by value and then by input index.
  const auto numbers = std::stable_partition(
      order.begin(), order.end(), [&](std::size_t i) { return !std::isnan(values[i]); });
  std::sort(order.begin(), numbers, [&](std::size_t a, std::size_t b) {
    return values[a] < values[b] || (values[a] == values[b] && a < b);
  });

  sortedValues_.resize(n);
  inputIndex_ = std::move(order);
  for (std::size_t i = 0; i < n; ++i) {
    sortedValues_[i] = values[inputIndex_[i]];
    if (!std::isfinite(values[i]) && firstNonFinite_ == kNone)
      firstNonFinite_ = i;
  }
  // One for the first value, one more for each value unlike its predecessor
  // (a NaN is unlike everything, itself included).
  numDistinct_ = n == 0 ? 0 : 1;
  for (std::size_t i = 1; i < n; ++i)
    numDistinct_ += !(sortedValues_[i] == sortedValues_[i - 1]);
}

KMeansPlusPlus1D::~KMeansPlusPlus1D() = default;

void KMeansPlusPlus1D::RequireFiniteValues(const char* operation) const {
  if (firstNonFinite_ == kNone)
    return;
  const std::size_t at = static_cast<std::size_t>(
      std::find(inputIndex_.begin(), inputIndex_.end(), firstNonFinite_) - inputIndex_.begin());
  const double value = sortedValues_[at];
  throw ZEL_Failure(ZEL_Code("151233070825"),
                    ZEL_MESSAGE("%s: the value at input index %zu is %s; only finite values "
                                "can be clustered.",
                                operation, firstNonFinite_,
                                std::isnan(value) ? "NaN" : value > 0 ? "+Inf" : "-Inf"),
                    kHeader);
}

void KMeansPlusPlus1D::CreateClusters(std::size_t maxIterations, std::vector<double>& centers,
                                      std::vector<std::size_t>& assignment,
                                      CLUSTERING_INFO& info) const {
  RequireFiniteValues("CreateClusters");
  const std::size_t n = sortedValues_.size();
  if (n > 0 && centers_.empty())
    throw ZEL_Failure(ZEL_Code("151301070825"),
                      "CreateClusters: no cluster centers are seeded; call SeedCentersSimple or "
                      "SeedCentersAdvanced with k >= 1 first.",
                      kHeader);

  // Everything the iteration touches is allocated here, once: two cluster
  // arrays in sorted order that take turns as the previous and the current
  // assignment, the centers and the per-cluster totals.
  const double* values = sortedValues_.data();
  std::vector<double> work(centers_);
  std::size_t k = work.size();
  tarn_detail::ClusterTotals totals(k);
  std::vector<std::size_t> current(n);
  std::vector<std::size_t> next(n);
  tarn_detail::AssignPointsToClusters(values, n, work.data(), k, current.data());

  std::uint64_t iterations = 0;
  double meanSize = 0.0;
  while (iterations < maxIterations) {
    ++iterations;
    k = tarn_detail::ComputeCenters(values, n, current.data(), k, totals, work.data(), &meanSize);
    tarn_detail::AssignPointsToClusters(values, n, work.data(), k, next.data());
    const bool repeated = next == current;
    current.swap(next);
    if (repeated)
      break;
  }
  // The final update, from the last assignment; with no iteration that is
  // the assignment to the seeded centers.
  const std::size_t assignedTo = k;
  k = tarn_detail::ComputeCenters(values, n, current.data(), assignedTo, totals, work.data(),
                                  &meanSize);
  work.resize(k);

  double scale = 1.0;
  const double squares = SquaredSpreadSum(sortedValues_, current, totals.remap, work, &scale);

  assignment.assign(n, 0);
  for (std::size_t i = 0; i < n; ++i)
    assignment[inputIndex_[i]] = totals.remap[current[i]];
  centers.swap(work);

  info.numPoints = n;
  info.numClusters = k;
  info.numDistinctValues = numDistinct_;
  info.numIterations = iterations;
  info.maxIterations = maxIterations;
  // The sum is divided by the number of clusters, not of points.
  info.spread = k == 0 ? 0.0 : std::sqrt(squares / static_cast<double>(k)) * scale;
  info.meanClusterSize = meanSize;
  info.minValue = n == 0 ? 0.0 : sortedValues_.front();
  info.maxValue = n == 0 ? 0.0 : sortedValues_.back();
}

double KMeansPlusPlus1D::CalculateQualityFactor(const CLUSTERING_INFO& info) {
  if (info.numClusters >= 1 && info.numDistinctValues >= 1 && info.maxValue > info.minValue) {
    const double range = info.maxValue - info.minValue;
    if (std::isfinite(range))
      return 1.0 - info.spread / range;
    // Values farther apart than the largest double: the same ratio of
    // halves, so that it stays a number.
    return 1.0 - (info.spread * 0.5) / (info.maxValue * 0.5 - info.minValue * 0.5);
  }
  return info.numDistinctValues == 1 ? 1.0 : 0.0;
}
