//===- TarnUtilities/math/TarnMathUtil.h - Cheap scalar functions -*- C++ -*-===//
//
// Fast substitutes for three library functions. TarnMathUtil is a namespace
// of free functions (TarnMathUtil::sincos(x, s, c)).
//
// Example:
//   TarnMathUtil::acosh(1.0)    => 0.0
//   TarnMathUtil::acosh(0.5)    => NaN
//   TarnMathUtil::rsqrt64(4.0)  => 0.5 (within a few ulp, see below)
//   double s, c;
//   TarnMathUtil::sincos(0.5, s, c);  // s = sin 0.5, c = cos 0.5
//
// Accuracy, measured against glibc's libm and long double (the tests hold
// these bounds):
//   acosh    within 2 ulp from x = 1.5 on; just above 1, where x*x - 1 and
//            the logarithm of a value near 1 lose digits, relative error
//            up to 4e-9
//   rsqrt64  relative error below 4.7e-6 (two Newton steps from a guess
//            good to about 3.5%)
//   sincos   absolute error below 3.6e-15 (2^-48, about 32 ulp of values
//            near 1), the error of the polynomials at |d| = 1/16; exact
//            table values at the breakpoints k/16
// They are substitutes where speed matters more than the last digits.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_TARNMATHUTIL_H
#define TARNUTILITIES_MATH_TARNMATHUTIL_H

#include "TarnUtilities/Export.h"

namespace TarnMathUtil {

/// Inverse hyperbolic cosine. Below 1 (any negative x included) NaN, from
/// (x-x)/(x-x), without any report; below 2^28 ln(x + sqrt(x*x - 1));
/// from 2^28 on ln(x) + ln 2. The branch is taken on the upper 32 bits of x
/// read as a signed integer.
TARN_API double acosh(double x);

/// 1/sqrt(x) from the bit-pattern guess 0x5fe6eb50c7b537a9 - (bits(x) >> 1)
/// refined by two Newton steps y = y*(1.5 - (0.5*x)*y*y). Meant for
/// positive normal x; 0, negatives, infinities and NaN get whatever the
/// formula gives (no trap, no report).
TARN_API double rsqrt64(double x);

/// s = sin x and c = cos x for 0 <= x <= 1.5625 (= 25/16), from tables of
/// sin and cos at the breakpoints t = k/16 and short polynomials in
/// d = x - t, t the first breakpoint at or above x (so -1/16 < d <= 0).
/// That also covers -1/16 < x < 0 (t = 0). For any other x (x <= -1/16,
/// x > 1.5625, NaN) the tables do not apply and s and c come from std::sin
/// and std::cos.
TARN_API void sincos(double x, double& s, double& c);

} // namespace TarnMathUtil

#endif // TARNUTILITIES_MATH_TARNMATHUTIL_H
