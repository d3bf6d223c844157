//===- KMeansSeeding.cpp - Random and deterministic seeding -----------------===//
//
// SeedCentersSimple draws with the C runtime's rand() scaled by 1/32768, the
// draw of a generator that returns 15 bits. glibc's rand() returns 31 bits
// (RAND_MAX = 2^31 - 1), with which the scaled draw would point far beyond
// the candidates; each draw therefore takes rand() modulo 32768, which
// leaves every draw of a 15-bit generator as it is.
//
// SeedCentersAdvanced picks per run of distinct values the medoid: for
// sorted distinct values v_1..v_m with mean u, sum_j (v_j - v_i)^2 equals
// sum_j (v_j - u)^2 + m (v_i - u)^2, so the medoid is the value nearest to
// u, the lower one when two are equally near. That needs one sum per run
// instead of m, and the comparisons with u are made exactly (ExactSum), so
// the choice never depends on rounding.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/numerics/KMeansPlusPlus1D.h"
#include "TarnUtilities/math/TarnAlgorithmUtil.h"
#include "numerics/ExactSum.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

namespace {

/// The random generator's draws are used modulo this: the scaling by
/// 3.0517578125e-5 = 1/32768 below assumes values in [0, 32767].
constexpr int kDrawRange = 32768;
constexpr double kDrawScale = 3.0517578125e-5;

/// Order statistics over runs of equal values (a Fenwick tree of their
/// remaining counts): the i-th remaining candidate in sorted order, and
/// removal of a whole run, each in O(log runs).
class RemainingCandidates {
public:
  explicit RemainingCandidates(const std::vector<std::size_t>& runLengths)
      : tree_(runLengths.size() + 1, 0) {
    for (std::size_t r = 0; r < runLengths.size(); ++r)
      Change(r, static_cast<long long>(runLengths[r]));
  }
  /// The run holding the candidate with 0-based rank i among the remaining.
  std::size_t RunOf(std::size_t i) const {
    std::size_t at = 0;
    std::size_t step = 1;
    while (step * 2 < tree_.size())
      step *= 2;
    for (; step > 0; step /= 2)
      if (at + step < tree_.size() && tree_[at + step] <= i) {
        at += step;
        i -= tree_[at];
      }
    return at; // the tree is 1-based: run `at` is the (at+1)-th
  }
  void Remove(std::size_t run, std::size_t length) { Change(run, -static_cast<long long>(length)); }

private:
  void Change(std::size_t run, long long delta) {
    for (std::size_t i = run + 1; i < tree_.size(); i += i & (~i + 1))
      tree_[i] = static_cast<std::size_t>(static_cast<long long>(tree_[i]) + delta);
  }
  std::vector<std::size_t> tree_;
};

/// The medoid of the ascending distinct values v[0, m): the value nearest to
/// their exact mean u, the lower of two equally near. With S = 2 * sum v,
/// v_i <= u is 2m * v_i <= S, and the lower of a < b is nearer or as near
/// exactly when 2u <= a + b, that is S <= m * a + m * b.
double Medoid(const double* v, std::size_t m) {
  tarn_detail::ExactSum twiceSum;
  for (std::size_t j = 0; j < m; ++j)
    twiceSum.Add(v[j], 2);
  const auto aboveMean = [&](double x) {
    tarn_detail::ExactSum difference = twiceSum;
    difference.Add(x, 2 * m, true);
    return difference.Sign() < 0;
  };
  // The first value above the mean; v[0] <= u always holds.
  const std::size_t above = static_cast<std::size_t>(
      std::partition_point(v, v + m, [&](double x) { return !aboveMean(x); }) - v);
  if (above == m)
    return v[m - 1];
  const double lower = v[above - 1];
  const double upper = v[above];
  tarn_detail::ExactSum excess = twiceSum;
  excess.Add(lower, m, true);
  excess.Add(upper, m, true);
  return excess.Sign() <= 0 ? lower : upper;
}

} // namespace

void KMeansPlusPlus1D::SeedCentersSimple(std::size_t k) {
  RequireFiniteValues("SeedCentersSimple");
  // Runs of equal values in sorted order: a chosen value removes its run.
  std::vector<double> runValue;
  std::vector<std::size_t> runLength;
  for (std::size_t i = 0; i < sortedValues_.size(); ++i) {
    if (i == 0 || sortedValues_[i] != sortedValues_[i - 1]) {
      runValue.push_back(sortedValues_[i]);
      runLength.push_back(0);
    }
    ++runLength.back();
  }
  RemainingCandidates remaining(runLength);
  std::size_t candidates = sortedValues_.size();
  const std::size_t count = std::min<std::size_t>(k, runValue.size());
  std::vector<double> chosen;
  chosen.reserve(count);
  while (chosen.size() < count) {
    const int draw = std::rand() % kDrawRange;
    // Below candidates: draw * 2^-15 < 1. The product is exact in double
    // while candidates < 2^38.
    const auto index =
        static_cast<std::size_t>(static_cast<double>(candidates) * draw * kDrawScale);
    const std::size_t run = remaining.RunOf(index);
    chosen.push_back(runValue[run]);
    // Every candidate equal to the chosen value goes, so the next draw
    // always meets a new value.
    remaining.Remove(run, runLength[run]);
    candidates -= runLength[run];
  }
  std::sort(chosen.begin(), chosen.end());
  centers_ = std::move(chosen);
}

void KMeansPlusPlus1D::SeedCentersAdvanced(std::size_t k) {
  RequireFiniteValues("SeedCentersAdvanced");
  std::vector<double> distinct;
  distinct.reserve(numDistinct_);
  for (std::size_t i = 0; i < sortedValues_.size(); ++i)
    if (i == 0 || sortedValues_[i] != sortedValues_[i - 1])
      distinct.push_back(sortedValues_[i]);
  if (k >= distinct.size()) {
    centers_ = std::move(distinct);
    return;
  }
  if (k == 0) {
    centers_.clear();
    return;
  }
  std::vector<std::size_t> bounds;
  TarnAlgorithmUtil::GenerateUniformIntervals(distinct.size(), k, bounds);
  std::vector<double> chosen;
  chosen.reserve(k);
  for (std::size_t r = 0; r < k; ++r) {
    const std::size_t length = bounds[r + 1] - bounds[r];
    // With k below the number of distinct values every run holds at least
    // one value, so the rule for an empty run (repeat the previous center)
    // never applies, and the medoids of the disjoint ascending runs are
    // strictly ascending.
    assert(length > 0 && "k below the distinct count leaves no run empty");
    chosen.push_back(Medoid(distinct.data() + bounds[r], length));
  }
  centers_ = std::move(chosen);
}
