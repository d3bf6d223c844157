//===- text/ShortestDigitsInternal.h - Shared pieces of digit generation -===//
//
// Library-internal declarations shared by the big-number and the fast paths
// of the shortest-digit generator.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_SRC_TEXT_SHORTESTDIGITSINTERNAL_H
#define TARN_SRC_TEXT_SHORTESTDIGITSINTERNAL_H

#include "TarnUtilities/text/detail/ShortestDigits.h"

namespace tarn_detail {

/// Builds the table of 5^0 .. 5^324 used to scale by powers of ten (once
/// per process; later calls return at once).
void InitPow5Bignums();

/// floor(x * log10(2)) for |x| <= 2620: 315653 / 2^20 is log10(2) to 7
/// digits, and no x * log10(2) in that range lies closer to an integer than
/// the error (the formatter's tests of every power of two cover each x).
inline int FloorLog10Pow2(int x) { return (x * 315653) >> 20; }

/// Bit length of a non-zero 64-bit value.
inline int BitLength64(uint64_t x) { return 64 - __builtin_clzll(x); }

/// The scale estimate of the digit generator: a k with 10^(k-1) <= v*10 and
/// k at most one below the true decimal exponent of the interval's high end,
/// from v's bit length alone.
inline int EstimateK(const BinaryValue& v) {
  const int x = v.e + BitLength64(v.f) - 1; // v >= 2^x
  return x == 0 ? 0 : FloorLog10Pow2(x) + 1;
}

__extension__ typedef unsigned __int128 UInt128;

/// Bit length of a 128-bit value (0 for 0).
inline int BitLength128(UInt128 x) {
  const uint64_t hi = static_cast<uint64_t>(x >> 64);
  return hi ? 64 + BitLength64(hi) : (x ? BitLength64(static_cast<uint64_t>(x)) : 0);
}

/// 10^0 .. 10^19, every power of ten below 2^64.
extern const uint64_t kPow10U64[20];

/// Number of decimal digits of x (1 for 0).
inline int DecimalLength(uint64_t x) {
  int n = 1;
  while (n < 20 && x >= kPow10U64[n])
    ++n;
  return n;
}

/// Writes the `width` decimal digits of x < 10^width to p[0 .. width), with
/// leading zeros: (42, 4) gives "0042".
void WriteDigits(char* p, uint64_t x, int width);

/// Shortest digits of values whose exact decimal expansion is short, such as
/// 1.5, 0.25, 7.125 and 12345.0; false for all other values.
bool ShortDecimalDigits(const BinaryValue& v, DecimalDigits& out);

/// A quick filter before ShortDecimalDigits: v = odd * 2^x needs x in
/// [-27, 63] for its expansion to be short and fit 64 bits.
inline bool MayBeShortDecimal(const BinaryValue& v) {
  const int x = v.e + __builtin_ctzll(v.f);
  return x >= -27 && x <= 63;
}

/// Shortest digits computed exactly on 128-bit integers; false when the
/// scaled values do not fit.
bool ShortestDigitsExact128(const BinaryValue& v, DecimalDigits& out);

} // namespace tarn_detail

#endif // TARN_SRC_TEXT_SHORTESTDIGITSINTERNAL_H
