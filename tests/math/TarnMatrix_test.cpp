//===- TarnMatrix_test.cpp - Fixed-size value matrix ------------------------===//
// Small integer-valued elements keep every operation exact, so identities are
// checked with ==; one case pins the order of summation and the sign of zero.
#include "TarnUtilities/math/TarnMatrix.h"

#include "math/MathTestSupport.h"

// Compile-time use, as geometry code relies on it.
constexpr TarnMatrix<2, 3> kA(1, 2, 3, 4, 5, 6);
static_assert(TarnVector3d() == TarnVector3d(0, 0, 0) && kA(1, 0) == 4 && kA[5] == 6);
static_assert(kA * TarnMatrix<3, 1>(1, 0, -1) == TarnMatrix<2, 1>(-2, -2));
static_assert(kA.Transpose()(2, 1) == 6 && TarnMatrix3x3d::Identity()(1, 1) == 1);

template <std::size_t R, std::size_t C> TarnMatrix<R, C> RandomSmall(std::mt19937& rng) {
  TarnMatrix<R, C> m;
  for (std::size_t i = 0; i < R * C; ++i)
    m[i] = int(rng() % 41) - 20;
  return m;
}

TEST(TarnMatrix, AlgebraicIdentitiesHoldExactly) {
  std::mt19937 rng(11);
  for (int round = 0; round < 200; ++round) {
    const auto a = RandomSmall<3, 1>(rng), b = RandomSmall<3, 1>(rng);
    const auto m = RandomSmall<3, 3>(rng);
    const auto n = RandomSmall<3, 2>(rng);
    EXPECT_EQ((a + b) - b, a);
    EXPECT_EQ(a + a, 2.0 * a);
    EXPECT_EQ((a * 4.0) / 4.0, a);
    EXPECT_EQ(-a + a, TarnVector3d());
    EXPECT_EQ(a.Cross(b), -Cross(b, a));
    EXPECT_EQ(a.Dot(a.Cross(b)), 0.0);
    EXPECT_EQ(Dot(a.Cross(b), a.Cross(b)), a.Dot(a) * b.Dot(b) - a.Dot(b) * a.Dot(b));
    EXPECT_EQ((m * n).Transpose(), n.Transpose() * m.Transpose());
    EXPECT_EQ((m * a)[2], m(2, 0) * a[0] + m(2, 1) * a[1] + m(2, 2) * a[2]);
    EXPECT_EQ(TarnMatrix3x3d::Identity() * m, m);
  }
}

TEST(TarnMatrix, SummationOrderSignOfZeroAndNaN) {
  // In element order 1 + 2^-53 rounds back to 1 every time; from the end
  // the small terms would first add up.
  const double h = std::ldexp(1.0, -53), e = std::ldexp(1.0, -27); // e*e = 2^-54
  EXPECT_EQ(TarnVector3d(1, h, h).Dot(TarnVector3d(1, 1, 1)), 1.0);
  EXPECT_EQ(TarnMatrix3x3d(1, e, e, e, e, e, e, e, e).Norm(), 1.0);
  EXPECT_EQ(TarnVector3d(3, 0, 4).Norm(), 5.0);
  // Sums start from the first product, not from +0.
  EXPECT_TRUE(std::signbit(TarnVector3d(-0.0, -0.0, -0.0).Dot(TarnVector3d(1, 1, 1))));
  EXPECT_TRUE(std::signbit((-TarnVector3d())[2]));
  const TarnVector3d nan(0, std::nan(""), 0);
  EXPECT_TRUE(!(nan == nan) && nan != nan);
}
