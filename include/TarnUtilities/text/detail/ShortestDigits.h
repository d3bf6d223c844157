//===- TarnUtilities/text/detail/ShortestDigits.h - Digit generation -*- C++ -*-===//
//
// Shortest round-trip decimal digits of a binary floating-point value, by the
// free-format algorithm of Burger and Dybvig ("Printing floating-point numbers
// quickly and accurately", PLDI 1996). Public only so that the formatter's
// tests can compare the fast path with the exact and big-number paths; use
// FloatingPointFormatter instead.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_DETAIL_SHORTESTDIGITS_H
#define TARNUTILITIES_TEXT_DETAIL_SHORTESTDIGITS_H

#include "TarnUtilities/Export.h"

#include <cstdint>

namespace tarn_detail {

/// Digits d1 d2 ... dn (ASCII, not terminated) of a value d1.d2...dn * 10^exponent.
struct DecimalDigits {
  char digits[24];
  int count;
  int exponent;
};

/// The binary value f * 2^e to be printed, with the shape of its rounding
/// interval: lowerCloser when the gap below is half the gap above (f is the
/// smallest significand of its binade), acceptBounds when numbers exactly on
/// the interval's bounds read back to it (f even, round-half-even readers).
struct BinaryValue {
  uint64_t f; // > 0
  int e;
  bool lowerCloser;
  bool acceptBounds;
};

/// The value of a finite double other than zero (sign ignored).
TARN_API BinaryValue DecomposeDouble(double x);
/// The value of a finite float other than zero (sign ignored).
TARN_API BinaryValue DecomposeFloat(float x);

/// Shortest digits: the one-product method, falling back to the exact path
/// when its precision cannot decide.
TARN_API void ShortestDigits(const BinaryValue& v, DecimalDigits& out);
/// Shortest digits by the exact path alone: the digit generator run on short
/// decimal expansions, 128-bit fixed point and integers, and big numbers.
TARN_API void ShortestDigitsExact(const BinaryValue& v, DecimalDigits& out);
/// Shortest digits, always on big numbers.
TARN_API void ShortestDigitsBignum(const BinaryValue& v, DecimalDigits& out);

} // namespace tarn_detail

#endif // TARNUTILITIES_TEXT_DETAIL_SHORTESTDIGITS_H
