//===- text/ShortestDecimal.h - Free-format digits from one product -*- C++ -*-===//
//
// The free-format generator's digits without its digit loop: the shortest
// decimal in the rounding interval, the nearest to the value when several
// have that length, the upper one when the value lies exactly halfway. This
// is the choice the loop makes (see ShortestDigitsBignum.cpp), found the way
// Ryu, Schubfach and Dragonbox find it (Jeon, "Dragonbox: a new
// floating-point binary-to-decimal conversion algorithm", 2020): scale by a
// power of ten so that the interval is between 100 and 1000 units wide, then
// 1. the one multiple of 1000 units that the interval may hold is the
//    shortest candidate if it is there;
// 2. otherwise the interval holds a multiple of 100 units, and the nearest
//    one, round-half-up(y / 100), is the answer.
// Everything is computed from one 64-by-128-bit product with the table of
// powers of five, with known error bounds. A decision that the bounds leave
// open is settled exactly when the quantity involved is an integer (exact
// ties and values with short expansions, such as 0.5 or 12.25, are of this
// kind and common), and otherwise left to the exact path, which happens for
// values within 2^-63 units of a decision (none among 10^8 random values
// checked). Powers of two, whose interval is lopsided, go to the
// exact path too.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_SRC_TEXT_SHORTESTDECIMAL_H
#define TARN_SRC_TEXT_SHORTESTDECIMAL_H

#include "ShortestDigitsInternal.h"

#include "text/strings/Pow5Table128.h"

#include <cassert>
#include <cstdint>
#include <cstring>

namespace tarn_detail {

/// The decomposition of DecomposeDouble, inline for the formatter's hot path.
inline BinaryValue DecomposeDoubleBits(uint64_t bits) {
  const uint64_t frac = bits & ((uint64_t(1) << 52) - 1);
  const int field = static_cast<int>((bits >> 52) & 0x7FF);
  BinaryValue v;
  if (field == 0) {
    v.f = frac;
    v.e = -1074;
    v.lowerCloser = false;
  } else {
    v.f = frac | (uint64_t(1) << 52);
    v.e = field - 1075;
    v.lowerCloser = frac == 0 && field > 1;
  }
  v.acceptBounds = (v.f & 1) == 0;
  return v;
}

/// Whether n * 2^p * 10^k is an integer, for n > 0: n * 2^(p+k) * 5^k needs
/// enough factors of two, and for k < 0 the factor 5^-k in n.
bool IsScaledInteger(uint64_t n, int p, int k);

/// The scale: 10^k times the gap 2^e between neighbours lies in [100, 1000),
/// [10^kappa, 10^(kappa+1)).
constexpr int kShortestKappa = 2;

/// The free-format digits of v (shortest, nearest, ties up) from one 128-bit
/// product: m has at most 17 digits. False when v is a power of two or the
/// product's precision cannot decide; the exact path gives the digits then.
/// Precondition: 0 < v.f < 2^53, v.e within the exponents of doubles.
inline bool ShortestDecimalFast(const BinaryValue& v, DecimalValue& out) {
  assert(v.f > 0 && v.f < (uint64_t(1) << 53) && "a double's significand");
  if (v.lowerCloser)
    return false;
  const uint64_t fc = v.f;
  const int e = v.e;
  // With w = fc * 2^e, scaled by 10^k: y = w * 10^k, h = 2^(e-1) * 10^k the
  // half-gap, z = y + h and x = y - h the interval's ends. 2h lies in
  // [100, 1000).
  const int k = kShortestKappa - FloorLog10Pow2(e);
  const TarnFormatDetail::Pow5Significand& t = TarnFormatDetail::Pow5Entry(k);
  // 10^k = T * 2^(FloorLog2Pow10(k) - 127). With fc shifted by g bits, the
  // product's top 128 bits are y in units of 2^-64; g is 7 to 10 for every
  // double, so fc << g fits in 64 bits.
  const int g = e + static_cast<int>(TarnFormatDetail::FloorLog2Pow10(k)) + 1;
  assert(g >= 7 && g <= 10 && "the scale keeps fc << g within 64 bits");
  const uint64_t a = fc << g;
  // Y = floor(a * T / 2^64), exact floor of the 192-bit product. T is cut by
  // less than one unit, which costs less than a / 2^64 < 1/2 unit of Y:
  // y * 2^64 lies in [Y, Y + 1.5).
  const UInt128 Y = UInt128(a) * t.hi + ((UInt128(a) * t.lo) >> 64);
  // H = floor(T / 2^(65-g)): h * 2^64 lies in [H, H + 1.01).
  // (The shift is 55 to 58 bits, so each half of H comes from 64-bit shifts.)
  const int hs = 65 - g;
  const UInt128 H = (UInt128(t.hi >> hs) << 64) | ((t.hi << (64 - hs)) | (t.lo >> hs));

  // Step 1: c = 1000 * floor(z / 1000), the largest multiple of 1000 units
  // not above z. z * 2^64 lies in [Z, Z + 2.51).
  const UInt128 Z = Y + H;
  uint64_t zi = static_cast<uint64_t>(Z >> 64);
  const uint64_t zf = static_cast<uint64_t>(Z);
  bool zIsInteger = false;
  if (zf == 0 || zf >= ~uint64_t(0) - 1) {
    // Within 2.51 units of an integer: exact when z is one, an integer
    // N with Z in (N - 2.51, N] units.
    zIsInteger = IsScaledInteger(2 * fc + 1, e - 1, k);
    if (zIsInteger && zf != 0)
      ++zi;
    else if (!zIsInteger && zf != 0)
      return false; // z may lie on either side of zi + 1
  }
  const uint64_t s = zi / 1000;
  const uint64_t c = s * 1000;
  // c is z itself when z is an integer multiple of 1000: in the interval
  // only when its ends are.
  if (c != zi || !zIsInteger || v.acceptBounds) {
    // c against x = y - h: x * 2^64 lies in (X - 1.01, X + 1.5).
    const UInt128 X = Y - H;
    const UInt128 C = UInt128(c) << 64;
    bool inside;
    if (X + 2 <= C) {
      inside = true;
    } else if (X >= C + 2) {
      inside = false;
    } else if (IsScaledInteger(2 * fc - 1, e - 1, k)) {
      inside = v.acceptBounds; // x is the integer c
    } else {
      return false;
    }
    if (inside) {
      out.m = s;
      out.exponent = kShortestKappa + 1 - k;
      return true;
    }
  }

  // Step 2: the nearest multiple of 100 units, ties up:
  // floor((y + 50) / 100) = floor((floor(y) + 50) / 100).
  uint64_t yi = static_cast<uint64_t>(Y >> 64);
  if (static_cast<uint64_t>(Y) == ~uint64_t(0)) {
    // y may have reached yi + 1; it has exactly when it is an integer.
    if (!IsScaledInteger(fc, e, k))
      return false;
    ++yi;
  }
  out.m = (yi + 50) / 100;
  out.exponent = kShortestKappa - k;
  return true;
}

} // namespace tarn_detail

#endif // TARN_SRC_TEXT_SHORTESTDECIMAL_H
