//===- TarnMathUtil_test.cpp - Cheap scalar functions against libm ----------===//
// Oracles: glibc's libm and long double, within the bounds measured in
// TarnMathUtil.h (inherent in the polynomials, Newton steps and x*x - 1).
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/TarnMathUtil.h"

#include "math/MathTestSupport.h"

namespace {

/// Distance in units in the last place between two finite doubles of one sign.
std::int64_t Ulps(double a, double b) {
  std::int64_t x, y;
  std::memcpy(&x, &a, 8);
  std::memcpy(&y, &b, 8);
  return x > y ? x - y : y - x;
}

} // namespace

TEST(TarnMathUtil, SinCosOnTheTablesAndLibmOutside) {
  // The formula on the table read back at the breakpoints (d = 0): the
  // first t_k >= x, d = x - t_k and the two polynomials.
  double t[26], S[26], C[26];
  for (int k = 0; k < 26; ++k) {
    t[k] = k / 16.0;
    TarnMathUtil::sincos(t[k], S[k], C[k]);
    EXPECT_TRUE(Ulps(S[k], std::sin(t[k])) <= 1 && Ulps(C[k], std::cos(t[k])) <= 1) << k;
  }
  std::mt19937_64 rng(1);
  std::uniform_real_distribution<double> in(-0.0625, 1.5625);
  for (int i = 0; i < 200000; ++i) {
    const double x = in(rng);
    const int k = int(std::lower_bound(t, t + 26, x) - t);
    const double d = x - t[k], z = d * d;
    const double u = ((0.00833333332990032 - z * 0.0001984071815851) * z - 0.16666666666666602) * (z * d);
    const double v = ((0.04166666664033 - z * 0.0013888423656) * z - 0.4999999999999958) * z;
    double s, c;
    TarnMathUtil::sincos(x, s, c);
    ASSERT_EQ(Ulps(s, C[k] * u + S[k] * v + (C[k] * d + S[k])), 0) << x;
    ASSERT_EQ(Ulps(c, C[k] * v - S[k] * u + (C[k] - S[k] * d)), 0) << x;
    ASSERT_TRUE(std::fabs(s - std::sin(x)) < 3.6e-15 && std::fabs(c - std::cos(x)) < 3.6e-15) << x;
  }
  for (double x : {-0.0625, -1.0, std::nextafter(1.5625, 2.0), 100.0, -1e300, std::nan("")}) {
    double s, c;
    TarnMathUtil::sincos(x, s, c);
    EXPECT_TRUE(Ulps(s, std::sin(x)) == 0 && Ulps(c, std::cos(x)) == 0) << x;
  }
}

TEST(TarnMathUtil, Rsqrt64WithinTwoNewtonSteps) {
  std::mt19937_64 rng(2);
  std::uniform_real_distribution<double> exponent(-300, 300);
  for (int i = 0; i < 200000; ++i) {
    const double x = std::pow(10.0, exponent(rng));
    const long double exact = 1.0L / std::sqrt(static_cast<long double>(x));
    ASSERT_LE(std::fabs((TarnMathUtil::rsqrt64(x) - exact) / exact), 4.7e-6) << x;
  }
}

TEST(TarnMathUtil, AcoshAgainstLibm) {
  std::mt19937_64 rng(3);
  std::uniform_real_distribution<double> unit(1.0, 2.0);
  for (int i = 0; i < 100000; ++i) {
    const double nearOne = 1.0 + std::ldexp(unit(rng), -1 - int(rng() % 52));
    const long double exact = acoshl(nearOne);
    ASSERT_LE(std::fabs((TarnMathUtil::acosh(nearOne) - exact) / exact), 4e-9) << nearOne;
    const double x = 1.5 * std::pow(2.0, 40 * (unit(rng) - 1.0));
    ASSERT_LE(Ulps(TarnMathUtil::acosh(x), std::acosh(x)), 2) << x;
  }
  EXPECT_EQ(TarnMathUtil::acosh(1.0), 0.0);
  const double two28 = 268435456.0; // from here on ln x + ln 2
  EXPECT_EQ(TarnMathUtil::acosh(two28), std::log(two28) + 0.6931471805599453);
  for (double below : {0.5, std::nextafter(1.0, 0.0), -2.0, -0.0})
    EXPECT_TRUE(std::isnan(TarnMathUtil::acosh(below))) << below;
}
