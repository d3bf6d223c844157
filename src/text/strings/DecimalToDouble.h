//===- DecimalToDouble.h - Exact decimal to binary conversion ---*- C++ -*-===//
//
// The conversion behind TarnFormatUtil::str_to_double, in three stages that
// are tried in order, each exact when it answers:
//
//   1. ClingerFastPath: at most 19 digits whose integer is exactly a double
//      and a power of ten that is exactly a double; one IEEE multiplication
//      or division rounds correctly (Clinger, "How to read floating point
//      numbers accurately", 1990).
//   2. EiselLemire: the 19-digit integer times a 128-bit approximation of
//      5^q. It answers whenever the approximation error cannot reach the
//      rounding position and declines otherwise (Lemire, "Number parsing at
//      a gigabyte per second", 2021, after Eisel).
//   3. BigDecimalToBits: big-integer division of the decimal by a power of
//      two or five; always answers.
//
// Results are bit patterns of the magnitude (sign bit clear); the caller
// applies the sign.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_DECIMALTODOUBLE_H
#define TARNUTILITIES_SRC_TEXT_DECIMALTODOUBLE_H

#include "text/strings/DecimalScanner.h"
#include "text/strings/Pow5Table128.h"

#include <cassert>
#include <cstdint>
#include <cstring>

namespace TarnFormatDetail {

constexpr std::uint64_t kInfinityBits = 0x7FF0000000000000ULL;
constexpr std::uint64_t kFractionMask = (std::uint64_t(1) << 52) - 1;
constexpr std::uint64_t kHiddenBit = std::uint64_t(1) << 52;

/// Decimal exponents the reader scales by. Below kMinPow5 every 19-digit
/// w * 10^q is under 10^-324 (rounds to 0); above kMaxPow5 it is at least
/// 10^309 (rounds to infinity).
constexpr int kMinPow5 = -342;
constexpr int kMaxPow5 = 308;
static_assert(kMinPow5 >= kPow5TableMin && kMaxPow5 <= kPow5TableMax,
              "the table of powers of five covers the reader's exponents");

/// Where the double nearest to m * 2^b (m > 0) cuts m.
struct RoundingCut {
  std::int64_t exponent; ///< floor(log2(m * 2^b))
  std::int64_t dropped;  ///< low bits of m below the last bit the double keeps
};

/// Computes the cut: a double keeps 53 significant bits of a normal value and
/// every bit from 2^-1074 upward of a subnormal one.
inline RoundingCut CutFor(std::uint64_t m, std::int64_t b) {
  const std::int64_t topBit = 63 - __builtin_clzll(m);
  const std::int64_t exponent = topBit + b;
  return {exponent, exponent >= -1022 ? topBit - 52 : -1074 - b};
}

/// The bits of m below bit n, for n from 0 to 64 and beyond.
inline std::uint64_t LowBits(std::uint64_t m, std::int64_t n) {
  return n >= 64 ? m : m & ((std::uint64_t(1) << n) - 1);
}

/// Rounds the value m * 2^b (m > 0) to the nearest double, ties to even, and
/// returns its bit pattern. `sticky` says that the exact value lies strictly
/// above m * 2^b by less than 2^b. Precondition: m holds at least the bit
/// below the last kept bit, which is always true when m has 55 bits or more.
inline std::uint64_t RoundToDoubleBits(std::uint64_t m, std::int64_t b, bool sticky) {
  const RoundingCut cut = CutFor(m, b);
  if (cut.exponent > 1023)
    return kInfinityBits;
  if (cut.dropped > 64)
    return 0; // below 2^-1075 even with the sticky part: rounds to zero
  assert(cut.dropped >= 1 && "m must hold the rounding bit");
  std::uint64_t mantissa = cut.dropped == 64 ? 0 : m >> cut.dropped;
  const bool half = (m >> (cut.dropped - 1)) & 1;
  const bool above = sticky || LowBits(m, cut.dropped - 1) != 0;
  if (half && (above || (mantissa & 1)))
    ++mantissa;
  if (cut.exponent < -1022)
    return mantissa; // subnormal; a carry to 2^52 is the smallest normal
  std::int64_t exponent = cut.exponent;
  if (mantissa == (kHiddenBit << 1)) {
    mantissa = kHiddenBit;
    if (++exponent > 1023)
      return kInfinityBits;
  }
  return (static_cast<std::uint64_t>(exponent + 1023) << 52) | (mantissa & kFractionMask);
}

/// 10^0 ... 10^22: every one is exactly a double (5^22 < 2^53).
inline constexpr double kExactPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                         1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::int64_t kMaxExactPow10 = 22;
constexpr std::uint64_t kTwoPow53 = std::uint64_t(1) << 53;

/// Stage 1. Precondition: w < 10^19 is exact (no digits dropped).
inline bool ClingerFastPath(std::uint64_t w, std::int64_t q, double& out) {
  if (w > kTwoPow53 || q < -kMaxExactPow10)
    return false;
  // w <= 2^53 converts exactly; going through int64_t lets the compiler use
  // one signed conversion instruction instead of the unsigned sequence.
  if (q < 0) {
    out = static_cast<double>(static_cast<std::int64_t>(w)) / kExactPow10[-q];
    return true;
  }
  if (q > kMaxExactPow10) {
    // w * 10^(q-22) may still be an exact integer below 2^53.
    const std::int64_t extra = q - kMaxExactPow10;
    if (extra > 15)
      return false;
    const std::uint64_t scale = static_cast<std::uint64_t>(kExactPow10[extra]);
    if (w > kTwoPow53 / scale)
      return false;
    w *= scale;
    q = kMaxExactPow10;
  }
  out = static_cast<double>(static_cast<std::int64_t>(w)) * kExactPow10[q];
  return true;
}

/// Stage 2: the bits of the double nearest to w * 10^q, or false when the
/// 128-bit approximation leaves the rounding undecided.
/// Precondition: w > 0, kMinPow5 <= q <= kMaxPow5.
__extension__ inline bool EiselLemire(std::uint64_t w, std::int64_t q, std::uint64_t& bits) {
  const int lz = __builtin_clzll(w);
  w <<= lz;
  const Pow5Significand& t = Pow5Entry(q);
  // P = w * T (192 bits); (hi, lo) are its top 128 bits. The exact product
  // w * 5^q * 2^-t(q) lies in [P, P + 2^64) when T is cut. For 0 <= q <= 27,
  // 5^q < 2^63 is held exactly in t.hi (t.lo is zero), so w * t.hi is the
  // exact product: ties and exact values are then known as such.
  unsigned __int128 first = static_cast<unsigned __int128>(w) * t.hi;
  std::uint64_t hi = static_cast<std::uint64_t>(first >> 64);
  std::uint64_t lo = static_cast<std::uint64_t>(first);
  const bool exact = q >= 0 && q <= 27; // 5^27 < 2^63
  // With only the first product, the unknown part below can still add one
  // to hi. That matters only when the 9 lowest bits of hi (always below the
  // rounding bit) are all ones; then the second product narrows the unknown
  // part to at most one unit of lo.
  if ((hi & 0x1FF) == 0x1FF && t.lo != 0) {
    const std::uint64_t add = static_cast<std::uint64_t>((static_cast<unsigned __int128>(w) * t.lo) >> 64);
    lo += add;
    hi += (lo < add);
  }
  // value ~ hi * 2^b
  const std::int64_t b = 1 + FloorLog2Pow10(q) - lz;
  const RoundingCut cut = CutFor(hi, b);
  if (!exact && cut.dropped <= 65) {
    // A carry from below reaches the rounding bit only when every bit below
    // it, in hi and in lo, is one.
    const std::uint64_t ones = ~std::uint64_t(0);
    if (LowBits(hi, cut.dropped - 1) == LowBits(ones, cut.dropped - 1) && lo == ones)
      return false;
  }
  // When T is cut, the exact value has bits below the rounding bit that are
  // not all zero: if they were, the product (strictly below it) would show
  // all ones there and the test above would have declined.
  bits = RoundToDoubleBits(hi, b, exact ? lo != 0 : true);
  return true;
}


/// Exact conversion of w * 10^q when 5^-q divides w (-27 <= q < 0): the
/// value is then the integer w / 5^-q times 2^q. False when not applicable.
bool ExactDyadic(std::uint64_t w, std::int64_t q, std::uint64_t& bits);

/// Stage 3: the bits of the double nearest to the scanned number, from all
/// its digits. Precondition: d.kind == kNumber, d.digitCount > 0.
std::uint64_t BigDecimalToBits(const DecimalText& d);

/// The double nearest to the scanned text, sign included; kNone gives 0.0.
double DecimalToDouble(const DecimalText& d);

/// Scans the NUL-terminated text s and converts it: str_to_double without
/// the null check. *end (when end is not null) receives the end of the number.
double ReadDouble(const char* s, const char** end);

/// Appends the run of digits at p to w (w * 10^n + the n digits, modulo
/// 2^64) and returns the end of the run. Four digits at a time: each byte is
/// read only after the one before it proved to be a digit (so nothing
/// beyond the terminator is read), and w takes one multiplication per group
/// instead of one per digit.
inline const char* AppendDigitRun(const char* p, std::uint64_t& w) {
  for (;;) {
    const unsigned d0 = static_cast<unsigned char>(p[0]) - unsigned('0');
    if (d0 > 9)
      return p;
    const unsigned d1 = static_cast<unsigned char>(p[1]) - unsigned('0');
    if (d1 > 9) {
      w = 10 * w + d0;
      return p + 1;
    }
    const unsigned d2 = static_cast<unsigned char>(p[2]) - unsigned('0');
    if (d2 > 9) {
      w = 100 * w + (10 * d0 + d1);
      return p + 2;
    }
    const unsigned d3 = static_cast<unsigned char>(p[3]) - unsigned('0');
    if (d3 > 9) {
      w = 1000 * w + (100 * d0 + 10 * d1 + d2);
      return p + 3;
    }
    w = 10000 * w + (1000 * d0 + 100 * d1 + 10 * d2 + d3);
    p += 4;
  }
}

/// The common case of ReadDouble in one pass, without the general scanner:
/// [+-] digits [. digits] [(e|E) [+-] digits] with 1 to 19 mantissa digits
/// (leading zeros included), converted by Clinger's path or Eisel-Lemire.
/// False, with nothing stored, for every other text (no digits, more
/// digits, words, exponents beyond the table) and when Eisel-Lemire
/// declines: ReadDouble then reads the text from its start. Exact whenever
/// it answers.
inline bool ReadDoubleQuick(const char* s, const char** end, double& out) {
  const char* p = s;
  const bool negative = *p == '-';
  p += (*p == '-' || *p == '+');
  // Every mantissa digit goes into w; 19 digits always fit.
  std::uint64_t w = 0;
  const char* const first = p;
  p = AppendDigitRun(p, w);
  std::int64_t digits = p - first;
  std::int64_t q = 0;
  if (*p == '.') {
    const char* const fraction = ++p;
    p = AppendDigitRun(p, w);
    q = fraction - p;
    digits -= q;
  }
  if (digits == 0 || digits > kMaxWDigits)
    return false;
  if ((*p | 0x20) == 'e') {
    // Part of the number only with at least one digit.
    const char* x = p + 1;
    const bool negativeExponent = *x == '-';
    x += (*x == '-' || *x == '+');
    if (IsDigit(*x)) {
      std::int64_t exponent = 0;
      for (; IsDigit(*x); ++x)
        if (exponent < kExponentSaturation)
          exponent = 10 * exponent + (*x - '0');
      q += negativeExponent ? -exponent : exponent;
      p = x;
    }
  }
  double magnitude;
  if (w == 0) {
    magnitude = 0.0;
  } else if (!ClingerFastPath(w, q, magnitude)) {
    std::uint64_t bits;
    if (q < kMinPow5 || q > kMaxPow5 || !EiselLemire(w, q, bits))
      return false;
    std::memcpy(&magnitude, &bits, sizeof magnitude);
  }
  if (end != nullptr)
    *end = p;
  out = negative ? -magnitude : magnitude;
  return true;
}

} // namespace TarnFormatDetail

#endif // TARNUTILITIES_SRC_TEXT_DECIMALTODOUBLE_H
