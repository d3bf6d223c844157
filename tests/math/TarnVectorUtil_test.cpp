//===- TarnVectorUtil_test.cpp - 3-vector helpers ---------------------------===//
#include "TarnUtilities/math/TarnVectorUtil.h"
#include "math/MathTestSupport.h"

using namespace TarnVectorUtil;

TEST(TarnVectorUtil, CosinesDistancesAndNormsAgainstLongDouble) {
  std::mt19937 rng(3);
  std::uniform_real_distribution<double> d(-10, 10);
  for (int i = 0; i < 500; ++i) {
    const TarnVector3d a(d(rng), d(rng), d(rng)), b(d(rng), d(rng), d(rng));
    long double ab = 0, aa = 0, bb = 0, dd = 0;
    for (int k = 0; k < 3; ++k) {
      ab += (long double)a[k] * b[k];
      aa += (long double)a[k] * a[k];
      bb += (long double)b[k] * b[k];
      dd += ((long double)a[k] - b[k]) * ((long double)a[k] - b[k]);
    }
    EXPECT_NEAR(GetCos(a, b), double(ab / std::sqrt(aa * bb)), 1e-15);
    EXPECT_EQ(GetAngleAllowingZeroVectors(a, b), std::acos(GetCos(a, b)));
    EXPECT_NEAR(Distance(a, b), double(std::sqrt(dd)), 4e-15 * double(std::sqrt(dd)));
    EXPECT_NEAR(Normalise(a).Norm(), 1.0, 4e-16);
    TarnVector3d v = a;
    NormaliseVector(v);
    EXPECT_EQ(v, NormalisedDirection(a));
  }
}

TEST(TarnVectorUtil, ThresholdsAndClamping) {
  const TarnVector3d zero, x(1, 0, 0), tiny(1e-17, 0, 0), at(1e-16, 0, 0);
  // (0.5, 0.9, 0.4) and 8 times it give 1.0000000000000002 unclamped.
  const TarnVector3d p(0.5, 0.9, 0.4);
  EXPECT_EQ(GetCos(p, 8.0 * p), 1.0);
  EXPECT_EQ(GetCosAllowingZeroVectors(p, -8.0 * p), -1.0);
  EXPECT_EQ(GetAngleAllowingZeroVectors(x, zero), std::acos(0.0));
  const double limit = 9.99999993922529e-9; // the float 1e-8
  EXPECT_EQ(GetCosAllowingZeroVectors(TarnVector3d(limit, 0, 0), x), 1.0);
  EXPECT_EQ(GetCosAllowingZeroVectors(x, TarnVector3d(std::nextafter(limit, 0.0), 0, 0)), 0.0);
  EXPECT_TRUE(NormalisedDirection(tiny) == zero && Normalise(tiny) == tiny && NormalisedDirection(at) == at);
  EXPECT_EQ(Normalise(TarnVector3d(2e-16, 0, 0)), x);
  EXPECT_TRUE(EqualsWithTolerance(zero, TarnVector3d(0.5, -0.5, 0.5), 0.5));
  for (int k = 0; k < 3; ++k) {
    TarnVector3d off;
    off[k] = 0.5000001;
    EXPECT_FALSE(EqualsWithTolerance(zero, off, 0.5)) << k;
  }
  // GetCos: |a||b| = 1e-16 is still "zero"; just above it is accepted.
  EXPECT_EQ(GetCos(TarnVector3d(2e-16, 0, 0), x), 1.0);
  const auto failure = tarn_test::FailureOf([&] { GetCos(at, x); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->GetMessage(), "Cannot calculate with zero vectors.");
  EXPECT_EQ(failure->GetHeader() + failure->GetCode().GetCode(), "[%T|%n|%P|LIBUTIL|TarnVectorUtil] 095024130912");
}
