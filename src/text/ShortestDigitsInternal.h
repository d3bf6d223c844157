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

} // namespace tarn_detail

#endif // TARN_SRC_TEXT_SHORTESTDIGITSINTERNAL_H
