//===- KMeansSteps.cpp - Assignment and center update -----------------------===//
//
// Why the claims of one center form a run that starts where the previous
// center's run ended, so that "not yet assigned" is "at or above the end of
// the runs so far": every claim is tested against the neighbouring centers,
// and distances grow monotonically away from a center, so a center claims
// exactly the values nearest to it that its passes reach. Its starting
// point is the value nearest to it; if that point is not its own, it is
// nearer to a neighbour and the pass away from that neighbour claims the
// run. Values left over by the previous center's rightward pass are nearer
// to this center, and the leftward pass reaches down to them. The first
// center has no lower neighbour and claims everything below it; the last
// has no upper one and claims everything above it.
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

/// Sum of values[b, e) in four interleaved partial sums: the additions of
/// one partial sum do not wait for those of the others.
double RunSum(const double* values, std::size_t b, std::size_t e) {
  double s[4] = {0, 0, 0, 0};
  std::size_t i = b;
  for (; i + 4 <= e; i += 4)
    for (int j = 0; j < 4; ++j)
      s[j] += values[i + j];
  for (; i < e; ++i)
    s[0] += values[i];
  return (s[0] + s[1]) + (s[2] + s[3]);
}

/// The mean of values[b, e) (b < e), within [values[b], values[e-1]].
double RunMean(const double* values, std::size_t b, std::size_t e) {
  const double count = static_cast<double>(e - b);
  double mean = RunSum(values, b, e) / count;
  if (!std::isfinite(mean)) {
    // Finite values whose sum overflows: 2^-64 times any double, summed
    // fewer than 2^63 times, stays below the largest double.
    const double down = std::ldexp(1.0, -64);
    double sum = 0.0;
    for (std::size_t i = b; i < e; ++i)
      sum += values[i] * down;
    mean = std::ldexp(sum / count, 64);
  }
  return std::clamp(mean, values[b], values[e - 1]);
}

} // namespace

std::size_t DistinctPointAmong(const double* values, std::size_t n, std::size_t preferred,
                               std::size_t other) {
  if (!SharesValue(values, n, preferred))
    return preferred;
  if (other != kNoPoint && !SharesValue(values, n, other))
    return other;
  return preferred;
}

void AssignPointsToClusters(const double* values, std::size_t n, const double* centers,
                            std::size_t k, std::size_t* runEnd) {
  assert((n == 0 || k >= 1) && "values need at least one center");
  std::size_t assignedEnd = 0; // values below are assigned, the others not
  for (std::size_t c = 0; c < k; ++c) {
    if (n == 0) {
      runEnd[c] = 0;
      continue;
    }
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
    const auto pos = static_cast<std::size_t>(std::lower_bound(values, values + n, x) - values);
    const std::size_t first = std::min(pos, n - 1);
    const std::size_t second = first > 0 ? first - 1 : (n > 1 ? 1 : kNoPoint);
    std::size_t nearer = first;
    std::size_t farther = second;
    if (second != kNoPoint && std::fabs(values[second] - x) < std::fabs(values[first] - x))
      std::swap(nearer, farther);
    const std::size_t start = DistinctPointAmong(values, n, nearer, farther);

    const bool startClaimed =
        start >= assignedEnd &&
        (values[start] <= x ? claimsLeft(values[start]) : claimsRight(values[start]));
    // The claims: [low, high) from the start and the leftward pass, then
    // (start, rightEnd) from the rightward pass.
    std::size_t low = start;
    std::size_t high = startClaimed ? start + 1 : start;
    while (low > assignedEnd && claimsLeft(values[low - 1]))
      --low;
    std::size_t rightEnd = start + 1;
    if (rightEnd >= assignedEnd)
      while (rightEnd < n && claimsRight(values[rightEnd]))
        ++rightEnd;
    if (rightEnd > start + 1) {
      assert((startClaimed || low == start) && "a center claims one run");
      if (!startClaimed)
        low = start + 1;
      high = rightEnd;
    }
    assert((low == high || low == assignedEnd) && "each run begins where the last one ended");
    if (low != high)
      assignedEnd = high;
    runEnd[c] = assignedEnd;
  }
  assert(assignedEnd == n && "every value is assigned");
}

bool SameAssignment(const std::size_t* a, std::size_t ka, const std::size_t* b, std::size_t kb,
                    std::size_t n) {
  // A missing cluster is an empty run at the end.
  for (std::size_t c = 0; c < std::max(ka, kb); ++c)
    if ((c < ka ? a[c] : n) != (c < kb ? b[c] : n))
      return false;
  return true;
}

std::size_t ComputeCenters(const double* values, const std::size_t* runEnd, std::size_t k,
                           double* centers, std::size_t* remap, double* meanSize) {
  std::size_t out = 0;
  std::size_t begin = 0;
  for (std::size_t c = 0; c < k; ++c) {
    const std::size_t end = runEnd[c];
    remap[c] = begin == end ? kNoPoint : out;
    if (begin != end)
      centers[out++] = RunMean(values, begin, end);
    begin = end;
  }
  *meanSize = out == 0 ? 0.0 : static_cast<double>(begin) / static_cast<double>(out);
  return out;
}

} // namespace tarn_detail
