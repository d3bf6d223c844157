//===- TarnMatrix_test.cpp - Fixed-size value matrix ------------------------===//
//
// Small integer-valued elements keep every operation exact, so algebraic
// identities can be checked with ==; a few cases pin the documented order
// of summation and the sign of zero.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/TarnMatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

// Compile-time use, as geometry code relies on it.
constexpr TarnMatrix<2, 3> kA(1, 2, 3, 4, 5, 6);
static_assert(TarnVector3d() == TarnVector3d(0, 0, 0));
static_assert(kA(1, 0) == 4 && kA[5] == 6 && kA.Transpose()(2, 1) == 6);
static_assert(kA * TarnMatrix<3, 1>(1, 0, -1) == TarnMatrix<2, 1>(-2, -2));
static_assert(TarnVector3d(1, 0, 0).Cross(TarnVector3d(0, 1, 0)) == TarnVector3d(0, 0, 1));
static_assert(TarnMatrix3x3d::Identity()(1, 1) == 1 && TarnMatrix3x3d::Identity()(0, 1) == 0);

template <std::size_t R, std::size_t C> TarnMatrix<R, C> RandomSmall(std::mt19937& rng) {
  std::uniform_int_distribution<int> d(-20, 20);
  TarnMatrix<R, C> m;
  for (std::size_t i = 0; i < R * C; ++i)
    m[i] = d(rng);
  return m;
}

} // namespace

TEST(TarnMatrix, AlgebraicIdentitiesHoldExactly) {
  std::mt19937 rng(11);
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    const auto a = RandomSmall<3, 1>(rng), b = RandomSmall<3, 1>(rng);
    const auto m = RandomSmall<3, 3>(rng);
    const auto n = RandomSmall<3, 2>(rng);
    EXPECT_EQ((a + b) - b, a);
    EXPECT_EQ(a + a, 2.0 * a);
    EXPECT_EQ(a * 3.0, 3.0 * a);
    EXPECT_EQ((4.0 * a) / 4.0, a);
    EXPECT_EQ(-a + a, TarnVector3d());
    EXPECT_EQ(a.Cross(b), -b.Cross(a));
    EXPECT_EQ(a.Dot(a.Cross(b)), 0.0);
    EXPECT_EQ(Cross(a, b).Dot(Cross(a, b)), a.Dot(a) * b.Dot(b) - Dot(a, b) * Dot(a, b));
    EXPECT_EQ((a.Transpose() * b)[0], a.Dot(b));
    EXPECT_EQ((m * n).Transpose(), n.Transpose() * m.Transpose());
    EXPECT_EQ(TarnMatrix3x3d::Identity() * m, m);
    EXPECT_EQ(m * a, TarnVector3d(m(0, 0) * a[0] + m(0, 1) * a[1] + m(0, 2) * a[2],
                                  m(1, 0) * a[0] + m(1, 1) * a[1] + m(1, 2) * a[2],
                                  m(2, 0) * a[0] + m(2, 1) * a[1] + m(2, 2) * a[2]));
    EXPECT_EQ(m.Transpose().Transpose(), m);
    EXPECT_EQ(m(2, 1), m[7]);
  }
}

TEST(TarnMatrix, SummationOrderSignOfZeroAndNaN) {
  // Element order: 1 + 2^-53 rounds back to 1 each time; summed from the
  // end the small terms would add up to 2^-52 first.
  const double h = std::ldexp(1.0, -53);
  EXPECT_EQ(TarnVector3d(1, h, h).Dot(TarnVector3d(1, 1, 1)), 1.0);
  const double e = std::ldexp(1.0, -27); // e*e = 2^-54; eight of them = 2^-51
  EXPECT_EQ(TarnMatrix3x3d(1, e, e, e, e, e, e, e, e).Norm(), 1.0);
  EXPECT_EQ(TarnVector3d(3, 0, 4).Norm(), 5.0);
  // Sums start from the first product, not from +0.
  EXPECT_TRUE(std::signbit(TarnVector3d(-0.0, -0.0, -0.0).Dot(TarnVector3d(1, 1, 1))));
  EXPECT_TRUE(std::signbit((-TarnVector3d())[2]));
  const TarnVector3d nan(0, std::nan(""), 0);
  EXPECT_NE(nan, nan);
  EXPECT_FALSE(nan == nan);
}
