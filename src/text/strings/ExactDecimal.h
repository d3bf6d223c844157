//===- text/ExactDecimal.h - Exact decimal rounding of doubles ------------===//
//
// Rounds the exact binary value of a double to a decimal position with big
// integers, ties to even: the building block of fixed-precision, scientific
// and limited-length layouts.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_SRC_TEXT_EXACTDECIMAL_H
#define TARN_SRC_TEXT_EXACTDECIMAL_H

#include <string>

namespace tarn_detail {

/// The decimal digits of round(|x| * 10^decimals), ties to even, without
/// leading zeros ("0" for zero). decimals may be negative. x is finite.
///   (2.675, 2) => "267"    (0.125, 2) => "12"    (1250.0, -2) => "12"
std::string RoundedDecimal(double x, int decimals);

/// |x| (finite, non-zero) rounded to p >= 1 significant digits: the p digits
/// and the exponent of the first, x ~ d1.d2...dp * 10^exponent.
///   (12345.0, 3) => "123", 4      (9.96, 2) => "10", 1
void RoundedSignificant(double x, int p, int guessExponent, std::string& digits, int& exponent);

} // namespace tarn_detail

#endif // TARN_SRC_TEXT_EXACTDECIMAL_H
