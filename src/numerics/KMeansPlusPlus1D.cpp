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
#include <utility>

namespace {

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

/// Sum of (v - center)^2 over the ascending values, by runs: run c is
/// [runEnd[c-1], runEnd[c]) and its values sit with centers[remap[c]]. When
/// the sum overflows it is redone on values and centers scaled by 2^-600,
/// which keeps every square of a difference of two finite doubles (below
/// 2^1025, scaled below 2^425) and their sum finite; *scale then gives the
/// factor to apply to the square root.
double SquaredDistanceSum(const std::vector<double>& values, const std::vector<std::size_t>& runEnd,
                          std::size_t k, const std::vector<std::size_t>& remap,
                          const std::vector<double>& centers, double* scale) {
  const auto sum = [&](double factor) {
    double total = 0.0;
    std::size_t begin = 0;
    for (std::size_t c = 0; c < k; ++c) {
      for (std::size_t i = begin; i < runEnd[c]; ++i) {
        const double d = values[i] * factor - centers[remap[c]] * factor;
        total += d * d;
      }
      begin = runEnd[c];
    }
    return total;
  };
  *scale = 1.0;
  const double total = sum(1.0);
  if (std::isfinite(total))
    return total;
  *scale = std::ldexp(1.0, 600);
  return sum(std::ldexp(1.0, -600));
}

} // namespace

KMeansPlusPlus1D::KMeansPlusPlus1D(const std::vector<double>& values) : firstNonFinite_(kNone) {
  const std::size_t n = values.size();
  // NaN has no place in the order of operator<, and std::sort with it is
  // undefined: NaN values go to the end in input order, the rest is sorted
  // by value and then by input index.
  std::vector<std::pair<double, std::size_t>> points;
  points.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    if (!std::isnan(values[i]))
      points.emplace_back(values[i], i);
    if (!std::isfinite(values[i]) && firstNonFinite_ == kNone)
      firstNonFinite_ = i;
  }
  std::sort(points.begin(), points.end(), [](const auto& a, const auto& b) {
    return a.first < b.first || (a.first == b.first && a.second < b.second);
  });
  for (std::size_t i = 0; i < n; ++i)
    if (std::isnan(values[i]))
      points.emplace_back(values[i], i);

  sortedValues_.resize(n);
  inputIndex_.resize(n);
  for (std::size_t i = 0; i < n; ++i) {
    sortedValues_[i] = points[i].first;
    inputIndex_[i] = points[i].second;
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

  // Everything the iteration touches is allocated here, once: the centers
  // and two arrays of run ends that take turns as the previous and the
  // current assignment.
  const double* values = sortedValues_.data();
  std::vector<double> work(centers_);
  std::size_t k = work.size();
  std::vector<std::size_t> current(k);
  std::vector<std::size_t> next(k);
  std::vector<std::size_t> remap(k);
  tarn_detail::AssignPointsToClusters(values, n, work.data(), k, current.data());

  std::uint64_t iterations = 0;
  double meanSize = 0.0;
  std::size_t assignedTo = k; // the number of centers `current` refers to
  while (iterations < maxIterations) {
    ++iterations;
    k = tarn_detail::ComputeCenters(values, current.data(), assignedTo, work.data(), remap.data(),
                                    &meanSize);
    tarn_detail::AssignPointsToClusters(values, n, work.data(), k, next.data());
    const bool repeated =
        tarn_detail::SameAssignment(next.data(), k, current.data(), assignedTo, n);
    current.swap(next);
    assignedTo = k;
    if (repeated)
      break;
  }
  // The final update, from the last assignment; without iterations that is
  // the assignment to the seeded centers.
  k = tarn_detail::ComputeCenters(values, current.data(), assignedTo, work.data(), remap.data(),
                                  &meanSize);
  work.resize(k);

  double scale = 1.0;
  const double squares =
      SquaredDistanceSum(sortedValues_, current, assignedTo, remap, work, &scale);
  assignment.assign(n, 0);
  std::size_t begin = 0;
  for (std::size_t c = 0; c < assignedTo; ++c) {
    for (std::size_t i = begin; i < current[c]; ++i)
      assignment[inputIndex_[i]] = remap[c];
    begin = current[c];
  }
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
