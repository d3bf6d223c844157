//===- KMeansSteps.cpp - Assignment and center update -----------------------===//
//
// Why the passes give every value its nearest center: the starting point of
// a center is claimed only under the test of the pass on its side, and a
// pass claims a value only while it is nearer to this center than to the
// neighbouring one (at least as near on the leftward pass, whose ties the
// lower center's rightward pass has already taken). Distances grow
// monotonically away from a center, so the values claimed from one start
// are exactly the contiguous run of values nearest to that center, and the
// runs of consecutive centers meet without gap or overlap.
//
//===----------------------------------------------------------------------===//
#include "numerics/KMeansSteps.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace tarn_detail {

namespace {

/// True if values[i] equals a neighbour in the sorted list.
bool SharesValue(const double* values, std::size_t n, std::size_t i) {
  return (i > 0 && values[i - 1] == values[i]) || (i + 1 < n && values[i + 1] == values[i]);
}

/// The sum of values[i] for the values of cluster c scaled by 2^-64, so that
/// no partial sum of finite values can overflow.
double ScaledSum(const double* values, std::size_t n, const std::size_t* cluster, std::size_t c) {
  const double down = std::ldexp(1.0, -64);
  double sum = 0.0;
  for (std::size_t i = 0; i < n; ++i)
    if (cluster[i] == c)
      sum += values[i] * down;
  return sum;
}

} // namespace

std::size_t DistinctPointAmong(const double* values, std::size_t n, std::size_t preferred,
                               std::size_t other) {
  if (!SharesValue(values, n, preferred))
    return preferred;
  if (other != kUnassigned && !SharesValue(values, n, other))
    return other;
  return preferred;
}

void AssignPointsToClusters(const double* values, std::size_t n, const double* centers,
                            std::size_t k, std::size_t* cluster) {
  if (n == 0)
    return;
  assert(k >= 1 && "values need at least one center");
  std::fill(cluster, cluster + n, kUnassigned);
  for (std::size_t c = 0; c < k; ++c) {
    const double x = centers[c];
    assert((c == 0 || centers[c - 1] < x) && "centers must be strictly ascending");
    const bool hasPrev = c > 0;
    const bool hasNext = c + 1 < k;
    const double prev = hasPrev ? centers[c - 1] : 0.0;
    const double next = hasNext ? centers[c + 1] : 0.0;
    const auto claimsLeft = [&](double v) {
      return !hasPrev || (v > prev && std::fabs(v - x) <= std::fabs(v - prev));
    };
    const auto claimsRight = [&](double v) {
      return !hasNext || (v < next && std::fabs(v - x) <= std::fabs(v - next));
    };

    // The two points around the insertion position: the one at it (or the
    // last point) and the one before it (the second point at position 0).
    const std::size_t pos = static_cast<std::size_t>(std::lower_bound(values, values + n, x) - values);
    const std::size_t first = std::min(pos, n - 1);
    const std::size_t second = first > 0 ? first - 1 : (n > 1 ? 1 : kUnassigned);
    std::size_t nearer = first;
    std::size_t farther = second;
    if (second != kUnassigned && std::fabs(values[second] - x) < std::fabs(values[first] - x))
      std::swap(nearer, farther);
    const std::size_t start = DistinctPointAmong(values, n, nearer, farther);

    if (cluster[start] == kUnassigned &&
        (values[start] <= x ? claimsLeft(values[start]) : claimsRight(values[start])))
      cluster[start] = c;
    for (std::size_t i = start; i-- > 0 && cluster[i] == kUnassigned && claimsLeft(values[i]);)
      cluster[i] = c;
    for (std::size_t i = start + 1; i < n && cluster[i] == kUnassigned && claimsRight(values[i]); ++i)
      cluster[i] = c;
  }
}

std::size_t ComputeCenters(const double* values, std::size_t n, const std::size_t* cluster,
                           std::size_t k, ClusterTotals& totals, double* centers,
                           double* meanSize) {
  std::fill(totals.sum.begin(), totals.sum.begin() + k, 0.0);
  std::fill(totals.count.begin(), totals.count.begin() + k, std::size_t(0));
  // Walk runs of one cluster: in practice each cluster is one run, so the
  // sum stays in a register. The values ascend, so a cluster's first value
  // is its smallest and its last value its largest.
  for (std::size_t i = 0; i < n;) {
    const std::size_t c = cluster[i];
    assert(c < k && "every value must be assigned");
    double runSum = 0.0;
    std::size_t j = i;
    for (; j < n && cluster[j] == c; ++j)
      runSum += values[j];
    if (totals.count[c] == 0)
      totals.low[c] = values[i];
    totals.sum[c] += runSum;
    totals.count[c] += j - i;
    totals.high[c] = values[j - 1];
    i = j;
  }

  std::size_t out = 0;
  for (std::size_t c = 0; c < k; ++c) {
    if (totals.count[c] == 0) {
      totals.remap[c] = kUnassigned;
      continue;
    }
    const double count = static_cast<double>(totals.count[c]);
    double mean = totals.sum[c] / count;
    if (!std::isfinite(mean))
      mean = std::ldexp(ScaledSum(values, n, cluster, c) / count, 64);
    centers[out] = std::clamp(mean, totals.low[c], totals.high[c]);
    totals.remap[c] = out++;
  }
  *meanSize = out == 0 ? 0.0 : static_cast<double>(n) / static_cast<double>(out);
  return out;
}

} // namespace tarn_detail
