//===- geometry/VarianceChains.h - Running spread on three axes -*- C++ -*-===//
//
// The running recurrence that measures how far a list of points spreads on
// each axis, for one list (T = double) or for two lists side by side in the
// lanes of a two-double vector (T = DoublePair). Lane arithmetic is the same
// IEEE operation per lane as the scalar one, so a lane's result is bit for
// bit the scalar result; the pair only shortens the division latency chain,
// which bounds the tree's construction.
//
// Not part of the public interface.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_GEOMETRY_VARIANCECHAINS_H
#define TARNUTILITIES_SRC_GEOMETRY_VARIANCECHAINS_H

#include <cstddef>

namespace ZEL_detail {

/// Two doubles in one SSE2 register (GCC and Clang vector extension); +, -,
/// * and / act lane by lane.
typedef double DoublePair __attribute__((vector_size(16)));

/// The spread of one list on x, y and z.
struct AxisSpread {
  double axis[3];
};

/// The state after k values c0 ... c(k-1) on each axis:
///   mean = c0, m2 = 0; for each next value c at position k:
///     delta = c - mean; mean = mean + delta / k; m2 = m2 + (c - mean) * delta
/// and the spread of n values is m2 / (n - 1).
///
/// The divisor is k, not k + 1 as in Welford's recurrence, so the mean after
/// the second value is that value: (0, 2, 4) gives means 0, 2, 3 and m2 0,
/// 0, 2, a spread of 1 where the variance is 4. The figure only ranks the three
/// axes of one list, and this ranking is the one the tree is defined by.
/// Every operation is a separate IEEE double operation in the order written,
/// and the geometry sources are compiled with -ffp-contract=off (no fusing of
/// a * b + c into one multiply-add, even where the target has one), so the
/// result is the same on every machine.
template <typename T> class VarianceChains {
public:
  /// Starts with the first point's coordinates.
  VarianceChains(T x, T y, T z) : mean_{x, y, z}, m2_{T{}, T{}, T{}} {}

  /// Takes the value at position `k` (k >= 1), given as a T.
  void Step(T x, T y, T z, T k) {
    StepAxis(0, x, k);
    StepAxis(1, y, k);
    StepAxis(2, z, k);
  }

  /// The spread of the `n` values taken (scalar chains only).
  AxisSpread Result(std::size_t n) const {
    const double divisor = static_cast<double>(n - 1);
    return AxisSpread{{m2_[0] / divisor, m2_[1] / divisor, m2_[2] / divisor}};
  }

  /// The scalar chains of one lane of a pair.
  VarianceChains<double> Lane(int lane) const {
    VarianceChains<double> scalar(mean_[0][lane], mean_[1][lane], mean_[2][lane]);
    scalar.m2_[0] = m2_[0][lane];
    scalar.m2_[1] = m2_[1][lane];
    scalar.m2_[2] = m2_[2][lane];
    return scalar;
  }

private:
  template <typename> friend class VarianceChains;

  void StepAxis(int axis, T c, T k) {
    const T delta = c - mean_[axis];
    mean_[axis] = mean_[axis] + delta / k;
    m2_[axis] = m2_[axis] + (c - mean_[axis]) * delta;
  }

  T mean_[3];
  T m2_[3];
};

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_GEOMETRY_VARIANCECHAINS_H
