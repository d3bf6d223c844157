//===- text/TarnFloatUtil.cpp - Floats in decimal -------------------------===//
//
// Shortest digits come from the free-format generator run on the float's own
// rounding interval; the double is then rounded from the exact decimal value
// with big integers.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFloatUtil.h"

#include "TarnUtilities/math/TarnBigInteger.h"
#include "TarnUtilities/text/detail/ShortestDigits.h"

#include <cmath>
#include <limits>

bool TarnFloatUtil::float_to_pow10(float value, FloatNumber& out) {
  out.negative = std::signbit(value);
  out.mantissa = 0;
  out.exponent = 0;
  if (!std::isfinite(value))
    return false;
  if (value == 0)
    return true;
  tarn_detail::DecimalDigits d;
  tarn_detail::ShortestDigits(tarn_detail::DecomposeFloat(value), d);
  int n = d.count;
  while (n > 1 && d.digits[n - 1] == '0')
    --n;
  uint32_t m = 0;
  for (int i = 0; i < n; ++i)
    m = m * 10 + static_cast<uint32_t>(d.digits[i] - '0');
  out.mantissa = m;
  out.exponent = d.exponent - (n - 1);
  return true;
}

double TarnFloatUtil::float_to_double(float value) {
  if (!std::isfinite(value) || value == 0)
    return static_cast<double>(value);
  FloatNumber num;
  float_to_pow10(value, num);
  // mantissa * 10^exponent, |exponent| <= 54, lies well inside the normal
  // range of doubles, so ToDouble rounds once and correctly.
  TarnBigInteger q(num.mantissa);
  double result;
  if (num.exponent >= 0) {
    q.Pow5Mult(static_cast<uint64_t>(num.exponent));
    result = q.ToDouble(num.exponent, 0);
  } else {
    // q = floor(m * 2^s / 5^n) with at least 55 bits; the remainder is sticky.
    const uint64_t n = static_cast<uint64_t>(-num.exponent);
    TarnBigInteger den(1);
    den.Pow5Mult(n);
    const int64_t s = 64 + static_cast<int64_t>(den.NumBits());
    q.Pow2Mult(static_cast<uint64_t>(s));
    TarnBigInteger rem;
    q.Div(den, &rem);
    result = q.ToDouble(-s - static_cast<int64_t>(n), rem.IsZero() ? 0 : 1);
  }
  return num.negative ? -result : result;
}
