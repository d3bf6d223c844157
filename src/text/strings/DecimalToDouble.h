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

/// Stage 1. Precondition: w < 10^19 is exact (no digits dropped).
bool ClingerFastPath(std::uint64_t w, std::int64_t q, double& out);

/// Stage 2: the bits of the double nearest to w * 10^q, or false when the
/// 128-bit approximation leaves the rounding undecided.
/// Precondition: w > 0, kMinPow5 <= q <= kMaxPow5.
bool EiselLemire(std::uint64_t w, std::int64_t q, std::uint64_t& bits);

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

} // namespace TarnFormatDetail

#endif // TARNUTILITIES_SRC_TEXT_DECIMALTODOUBLE_H
