//===- DecimalFastPaths.cpp - Exact fast paths of the decimal reader --------===//
//
// Clinger's fast path, the Eisel-Lemire 128-bit path and the exact path for
// short fractions that are dyadic, together with the rounding helper that
// the big-integer path shares. Nothing here ever gives an inexact answer:
// when a path cannot prove its rounding it declines.
//
//===----------------------------------------------------------------------===//
#include "text/DecimalToDouble.h"

#include <cassert>
#include <cstring>

namespace TarnFormatDetail {
namespace {

__extension__ typedef unsigned __int128 U128;

// 10^0 ... 10^22: every one is exactly a double (5^22 < 2^53).
constexpr double kExactPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::int64_t kMaxExactPow10 = 22;

// 5^0 ... 5^27: every one fits in 63 bits (5^27 < 2^63).
constexpr std::uint64_t kPow5U64[] = {1ULL,
                                      5ULL,
                                      25ULL,
                                      125ULL,
                                      625ULL,
                                      3125ULL,
                                      15625ULL,
                                      78125ULL,
                                      390625ULL,
                                      1953125ULL,
                                      9765625ULL,
                                      48828125ULL,
                                      244140625ULL,
                                      1220703125ULL,
                                      6103515625ULL,
                                      30517578125ULL,
                                      152587890625ULL,
                                      762939453125ULL,
                                      3814697265625ULL,
                                      19073486328125ULL,
                                      95367431640625ULL,
                                      476837158203125ULL,
                                      2384185791015625ULL,
                                      11920928955078125ULL,
                                      59604644775390625ULL,
                                      298023223876953125ULL,
                                      1490116119384765625ULL,
                                      7450580596923828125ULL};
constexpr std::int64_t kMaxPow5U64 = 27;

struct Pow5Significand {
  std::uint64_t hi;
  std::uint64_t lo;
};

// T(q) = floor(5^q * 2^-t(q)) in [2^127, 2^128), t(q) = floor(q*log2(5)) - 127:
// exact for 0 <= q <= 55, strictly below the true value otherwise.
constexpr Pow5Significand kPow5Table[] = {
#include "text/Pow5Table128.inc"
};
static_assert(sizeof kPow5Table / sizeof kPow5Table[0] == kMaxPow5 - kMinPow5 + 1,
              "one table entry per decimal exponent");

constexpr std::uint64_t kTwoPow53 = std::uint64_t(1) << 53;

std::uint64_t ToBits(double d) {
  std::uint64_t bits;
  std::memcpy(&bits, &d, sizeof bits);
  return bits;
}

int BitLength(std::uint64_t m) { return 64 - __builtin_clzll(m); }

// Computes the number of low bits of m below the last bit that a double
// keeps of m * 2^b: 53 significant bits for normal results, everything above
// 2^-1074 for subnormal ones. *exponent receives floor(log2(m * 2^b)).
std::int64_t DroppedBits(std::uint64_t m, std::int64_t b, std::int64_t* exponent) {
  *exponent = BitLength(m) - 1 + b;
  const std::int64_t lowestKept = *exponent >= -1022 ? *exponent - 52 : -1074;
  return lowestKept - b;
}

} // namespace

std::uint64_t RoundToDoubleBits(std::uint64_t m, std::int64_t b, bool sticky) {
  std::int64_t exponent;
  const std::int64_t dropped = DroppedBits(m, b, &exponent);
  if (exponent > 1023)
    return kInfinityBits;
  if (dropped > 64)
    return 0; // below 2^-1075 even with the sticky part: rounds to zero
  assert(dropped >= 1 && "m must hold the rounding bit");
  const U128 wide = m;
  std::uint64_t mantissa = static_cast<std::uint64_t>(wide >> dropped);
  const bool half = (wide >> (dropped - 1)) & 1;
  const bool above = (wide & ((U128(1) << (dropped - 1)) - 1)) != 0 || sticky;
  if (half && (above || (mantissa & 1)))
    ++mantissa;
  if (exponent < -1022)
    return mantissa; // subnormal; a carry to 2^52 is the smallest normal
  if (mantissa == kTwoPow53) {
    mantissa = kHiddenBit;
    if (++exponent > 1023)
      return kInfinityBits;
  }
  return (static_cast<std::uint64_t>(exponent + 1023) << 52) | (mantissa & kFractionMask);
}

bool ClingerFastPath(std::uint64_t w, std::int64_t q, double& out) {
  if (w > kTwoPow53 || q < -kMaxExactPow10)
    return false;
  if (q < 0) {
    out = static_cast<double>(w) / kExactPow10[-q];
    return true;
  }
  if (q > kMaxExactPow10) {
    // w * 10^(q-22) may still be an exact integer below 2^53.
    const std::int64_t extra = q - kMaxExactPow10;
    if (extra > 15)
      return false;
    const std::uint64_t limit = kTwoPow53 / static_cast<std::uint64_t>(kExactPow10[extra]);
    if (w > limit)
      return false;
    w *= static_cast<std::uint64_t>(kExactPow10[extra]);
    q = kMaxExactPow10;
  }
  out = static_cast<double>(w) * kExactPow10[q];
  return true;
}

bool EiselLemire(std::uint64_t w, std::int64_t q, std::uint64_t& bits) {
  const int lz = __builtin_clzll(w);
  w <<= lz;
  const Pow5Significand& t = kPow5Table[q - kMinPow5];
  // P = w * T (192 bits); (hi, lo) are its top 128 bits. The exact product
  // w * 5^q * 2^-t(q) lies in [P, P + 2^64) when T is cut, and equals P when
  // T is exact (0 <= q <= 27 here: then T fits in hi and lo is zero).
  U128 first = static_cast<U128>(w) * t.hi;
  std::uint64_t hi = static_cast<std::uint64_t>(first >> 64);
  std::uint64_t lo = static_cast<std::uint64_t>(first);
  const bool exact = q >= 0 && q <= kMaxPow5U64;
  // With only the first product, the unknown part below can still add one
  // to hi. That matters only when the 9 lowest bits of hi (always below the
  // rounding bit) are all ones; then the second product narrows the unknown
  // part to at most one unit of lo.
  if ((hi & 0x1FF) == 0x1FF && t.lo != 0) {
    const std::uint64_t add = static_cast<std::uint64_t>((static_cast<U128>(w) * t.lo) >> 64);
    lo += add;
    hi += (lo < add);
  }
  // value ~ hi * 2^b
  const std::int64_t b = 1 + FloorLog2Pow10(q) - lz;
  std::int64_t exponent;
  const std::int64_t dropped = DroppedBits(hi, b, &exponent);
  if (!exact && dropped <= 65) {
    // A carry from below reaches the rounding bit only when every bit below
    // it, in hi and in lo, is one.
    const U128 below = (U128(1) << (dropped - 1)) - 1;
    if ((static_cast<U128>(hi) & below) == below && lo == ~std::uint64_t(0))
      return false;
  }
  // When T is cut, the exact value has bits below the rounding bit that are
  // not all zero: if they were, the product (strictly below it) would show
  // all ones there and the test above would have declined.
  bits = RoundToDoubleBits(hi, b, exact ? lo != 0 : true);
  return true;
}

bool ExactDyadic(std::uint64_t w, std::int64_t q, std::uint64_t& bits) {
  if (q >= 0 || q < -kMaxPow5U64 || w % kPow5U64[-q] != 0)
    return false;
  // w * 10^q = (w / 5^-q) * 2^q. The integer converts with one correct
  // rounding; scaling by 2^q (q >= -27) is exact.
  const std::uint64_t m = w / kPow5U64[-q];
  bits = ToBits(static_cast<double>(m) / static_cast<double>(std::uint64_t(1) << -q));
  return true;
}

} // namespace TarnFormatDetail
