//===- MathTestSupport.h - Includes and helpers of the math tests ----------===//
#ifndef TARN_TESTS_MATH_MATHTESTSUPPORT_H
#define TARN_TESTS_MATH_MATHTESTSUPPORT_H

#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace math_test {

/// The double with the given bit pattern.
inline double FromBits(std::uint64_t b) {
  double d;
  std::memcpy(&d, &b, sizeof d);
  return d;
}

/// True if the n doubles at a and b have the same bits.
inline bool SameBits(const double* a, const double* b, std::size_t n = 1) {
  return std::memcmp(a, b, n * sizeof(double)) == 0;
}

} // namespace math_test

#endif // TARN_TESTS_MATH_MATHTESTSUPPORT_H
