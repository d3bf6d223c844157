//===- text/ExactDecimal.cpp - Exact decimal rounding of doubles ----------===//
//
// |x| = f * 2^e exactly, so |x| * 10^D = f * 5^D * 2^(D + e): a big-integer
// numerator over a big-integer denominator whose quotient is rounded to the
// nearest integer, ties to even.
//
//===----------------------------------------------------------------------===//
#include "ExactDecimal.h"

#include "TarnUtilities/math/TarnBigInteger.h"
#include "TarnUtilities/text/detail/ShortestDigits.h"

namespace tarn_detail {

std::string RoundedDecimal(double x, int decimals) {
  std::string out;
  if (x == 0) {
    out = "0";
    return out;
  }
  const BinaryValue v = DecomposeDouble(x);
  // num / den = f * 2^e * 10^decimals
  TarnBigInteger num(v.f), den(1);
  if (decimals >= 0) {
    num.Pow5Mult(static_cast<uint64_t>(decimals));
    num.Pow2Mult(static_cast<uint64_t>(decimals));
  } else {
    den.Pow5Mult(static_cast<uint64_t>(-decimals));
    den.Pow2Mult(static_cast<uint64_t>(-decimals));
  }
  if (v.e >= 0)
    num.Pow2Mult(static_cast<uint64_t>(v.e));
  else
    den.Pow2Mult(static_cast<uint64_t>(-v.e));
  TarnBigInteger rem;
  num.Div(den, &rem);
  rem.Pow2Mult(1);
  if (den < rem || (rem == den && (num.GetDigit(0) & 1)))
    num.Add(1);
  num.PrintAsDec(out);
  return out;
}

void RoundedSignificant(double x, int p, int guessExponent, std::string& digits, int& exponent) {
  int k = guessExponent;
  // Each retry moves k towards floor(log10 |x|) and cannot overshoot: a
  // value that gave fewer than p digits at k gives at most p at k - 1.
  for (;;) {
    digits = RoundedDecimal(x, p - 1 - k);
    const int len = static_cast<int>(digits.size());
    if (len == p) {
      exponent = k;
      return;
    }
    if (len == p + 1 && digits.find_first_not_of('0', 1) == std::string::npos) {
      // Rounded up to a power of ten: 9.96 => "10" at p = 2 becomes "1.0e1".
      digits.pop_back();
      exponent = k + 1;
      return;
    }
    k += len > p ? 1 : -1;
  }
}

} // namespace tarn_detail
