//===- text/ShortestDigitsInternal.h - Shared pieces of digit generation -===//
//
// Library-internal declarations shared by the big-number and the fast paths
// of the shortest-digit generator.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_SRC_TEXT_SHORTESTDIGITSINTERNAL_H
#define TARN_SRC_TEXT_SHORTESTDIGITSINTERNAL_H

#include "TarnUtilities/text/detail/ShortestDigits.h"

#include <cstring>

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

/// The eight decimal digits of x < 10^8 as the values 0..9 in eight bytes,
/// the first digit in the lowest byte (so that stored little-endian they
/// read in order): 12345678 gives 0x0807060504030201. The digits come from
/// the two halves of x, then the four quarters, then the eight digits, each
/// step a multiplication by a reciprocal on all parts at once:
/// 109951163 = ceil(2^40 / 10^4), 10486 = ceil(2^20 / 100), 103 = ceil(2^10 / 10),
/// each exact for the range of its parts (checked for every x < 10^8).
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "digit bytes are stored little-endian");
inline uint64_t EightDigits(uint32_t x) {
  const uint64_t halves = (uint64_t(x) * 109951163) >> 40; // x / 10^4
  uint64_t v = (uint64_t(x) << 32) - halves * ((uint64_t(10000) << 32) - 1);
  const uint64_t quarters = ((v * 10486) >> 20) & 0x0000007F0000007FULL;
  v = (v << 16) - quarters * ((uint64_t(100) << 16) - 1);
  const uint64_t tens = ((v * 103) >> 10) & 0x000F000F000F000FULL;
  return (v << 8) - tens * ((uint64_t(10) << 8) - 1);
}

/// The significant digits of a decimal m * 10^exponent: `count` ASCII digits
/// at `first` without m's trailing zeros, and the decimal exponent of the
/// first one (123 * 10^-1 gives "123" and 1; 4500 * 10^0 gives "45" and 3).
struct DigitRun {
  const char* first;
  int count;
  int exponent;
};

/// Writes the 17 digits of m < 10^17 (leading zeros included) to buf, which
/// needs 17 characters, and returns the run of its significant digits.
inline DigitRun SignificantDigits(char* buf, uint64_t m, int exponent) {
  const uint64_t high = m / 100000000;
  const uint32_t lowValue = static_cast<uint32_t>(m - high * 100000000);
  // Short values (12.5, 0.25) end in eight zeros here: no digits to make.
  const uint64_t low = lowValue == 0 ? 0 : EightDigits(lowValue);
  const uint32_t top = static_cast<uint32_t>(high / 100000000); // 0..9
  const uint64_t mid = EightDigits(static_cast<uint32_t>(high - uint64_t(top) * 100000000));
  const uint64_t ascii = 0x3030303030303030ULL; // '0' in every byte
  buf[0] = static_cast<char>('0' + top);
  const uint64_t midText = mid | ascii, lowText = low | ascii;
  std::memcpy(buf + 1, &midText, 8);
  std::memcpy(buf + 9, &lowText, 8);
  // Zero digits are zero bytes: leading ones are low bytes, trailing ones
  // high bytes of the eight-digit groups.
  const int begin = top ? 0 : mid ? 1 + __builtin_ctzll(mid) / 8 : 9 + __builtin_ctzll(low) / 8;
  const int end = low ? 17 - __builtin_clzll(low) / 8 : mid ? 9 - __builtin_clzll(mid) / 8 : 1;
  return {buf + begin, end - begin, exponent + 16 - begin};
}

/// Shortest digits of values whose exact decimal expansion is short, such as
/// 1.5, 0.25, 7.125 and 12345.0; false for all other values.
bool ShortDecimalDigits(const BinaryValue& v, DecimalDigits& out);

/// A quick filter before ShortDecimalDigits: v = odd * 2^x needs x in
/// [-27, 63] for its expansion to be short and fit 64 bits.
inline bool MayBeShortDecimal(const BinaryValue& v) {
  const int x = v.e + __builtin_ctzll(v.f);
  return x >= -27 && x <= 63;
}

/// The significant digits of a decimal held in registers: the first as a
/// character, the next sixteen as sixteen characters (the first in the
/// lowest byte; past the significant digits come '0' characters, then NUL
/// bytes), their count and the decimal exponent of the first.
struct DigitRegisters {
  char first;
  UInt128 rest;
  int count;
  int exponent;
};

/// The digits of m * 10^exponent in registers, for m < 10^17 with at least
/// 15 digits (every m of a normal double); false for shorter m.
inline bool DigitsInRegisters(uint64_t m, int exponent, DigitRegisters& out) {
  const uint64_t high = m / 100000000;
  const uint32_t lowValue = static_cast<uint32_t>(m - high * 100000000);
  // Short values (12.5, 0.25) end in eight zeros here: no digits to make.
  const uint64_t low = lowValue == 0 ? 0 : EightDigits(lowValue);
  const uint32_t top = static_cast<uint32_t>(high / 100000000); // 0..9
  const uint64_t mid = EightDigits(static_cast<uint32_t>(high - uint64_t(top) * 100000000));
  // Without a top digit, one or two of mid's digits may lead as zeros.
  if (top == 0 && (mid & 0xFFFF) == 0)
    return false;
  const uint64_t ascii = 0x3030303030303030ULL; // '0' in every byte
  const UInt128 digits = (UInt128(low | ascii) << 64) | (mid | ascii);
  // Zero digits are zero bytes: trailing ones are high bytes.
  const int end = low ? 17 - __builtin_clzll(low) / 8 : mid ? 9 - __builtin_clzll(mid) / 8 : 1;
  int begin = 0;
  if (top != 0) {
    out.first = static_cast<char>('0' + top);
    out.rest = digits;
  } else {
    begin = 1 + __builtin_ctzll(mid) / 8;
    const UInt128 shifted = digits >> (8 * (begin - 1));
    out.first = static_cast<char>(shifted);
    out.rest = shifted >> 8;
  }
  out.count = end - begin;
  out.exponent = exponent + 16 - begin;
  return true;
}

/// A decimal m * 10^exponent; m > 0 may end in zeros.
struct DecimalValue {
  uint64_t m;
  int exponent;
};

/// Shortest digits computed exactly on 128-bit integers; false when the
/// scaled values do not fit.
bool ShortestDigitsExact128(const BinaryValue& v, DecimalDigits& out);

} // namespace tarn_detail

#endif // TARN_SRC_TEXT_SHORTESTDIGITSINTERNAL_H
