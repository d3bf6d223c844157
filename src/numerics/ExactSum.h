//===- numerics/ExactSum.h - Exact sums of scaled doubles -------*- C++ -*-===//
//
// A fixed-point accumulator wide enough to hold any sum of finite doubles,
// each multiplied by a 64-bit count, without rounding (Kulisch's long
// accumulator). The k-means seeding uses it to compare a value with the
// exact mean of many values, so that its choice never depends on the order
// or the rounding of a floating-point sum.
//
// Example:
//   ExactSum s;
//   s.Add(0.1, 3);            // s = 3 * 0.1 exactly (0.1 as a double)
//   s.Add(0.3, 1, true);      // s = 3 * 0.1 - 0.3
//   s.Sign()                  => 1   (0.1 is a little above 1/10, 0.3 below 3/10)
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_NUMERICS_EXACTSUM_H
#define TARNUTILITIES_SRC_NUMERICS_EXACTSUM_H

#include <array>
#include <cstdint>

namespace tarn_detail {

class ExactSum {
public:
  /// Adds count * value exactly, or subtracts it when `subtract` is set.
  /// Precondition: value is finite (asserted).
  void Add(double value, std::uint64_t count = 1, bool subtract = false);
  /// -1, 0 or +1: the sign of the exact sum.
  int Sign() const;

private:
  // The least significant bit is worth 2^-1074, the smallest subnormal.
  // Bits needed: 1074 below the binary point, 1024 above it for a double,
  // 64 for the count, 64 headroom for up to 2^64 terms and one sign bit:
  // 2227, held in 35 limbs of 64 bits as a two's complement number.
  static constexpr int kLimbs = 35;
  std::array<std::uint64_t, kLimbs> limbs_{};
};

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_NUMERICS_EXACTSUM_H
