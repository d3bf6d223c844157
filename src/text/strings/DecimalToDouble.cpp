//===- DecimalToDouble.cpp - Exact decimal to binary conversion -------------===//
//
// The choice among the conversion paths, and the fast ones: Clinger's fast
// path, the Eisel-Lemire 128-bit path and the exact path for short fractions
// that are dyadic. Nothing here ever gives an inexact answer: when a path
// cannot prove its rounding it declines, and the big-integer path in
// DecimalBigPath.cpp decides.
//
//===----------------------------------------------------------------------===//
#include "text/strings/DecimalToDouble.h"

#include <cstring>
#include <limits>

namespace TarnFormatDetail {
namespace {

__extension__ typedef unsigned __int128 U128;

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

// Magnitudes whose first significant digit has a decimal exponent beyond
// these bounds need no arithmetic: 10^309 exceeds the largest double, and
// everything below 10^-324 lies under half the smallest subnormal (2^-1075,
// about 2.47e-324).
constexpr std::int64_t kMaxLeadExponent = 308;
constexpr std::int64_t kMinLeadExponent = -324;

double FromBits(std::uint64_t bits) {
  double d;
  std::memcpy(&d, &bits, sizeof d);
  return d;
}

std::uint64_t ToBits(double d) {
  std::uint64_t bits;
  std::memcpy(&bits, &d, sizeof bits);
  return bits;
}

} // namespace

bool EiselLemire(std::uint64_t w, std::int64_t q, std::uint64_t& bits) {
  const int lz = __builtin_clzll(w);
  w <<= lz;
  const Pow5Significand& t = Pow5Entry(q);
  // P = w * T (192 bits); (hi, lo) are its top 128 bits. The exact product
  // w * 5^q * 2^-t(q) lies in [P, P + 2^64) when T is cut. For 0 <= q <= 27,
  // 5^q < 2^63 is held exactly in t.hi (t.lo is zero), so w * t.hi is the
  // exact product: ties and exact values are then known as such.
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

bool ExactDyadic(std::uint64_t w, std::int64_t q, std::uint64_t& bits) {
  if (q >= 0 || q < -kMaxPow5U64 || w % kPow5U64[-q] != 0)
    return false;
  // w * 10^q = (w / 5^-q) * 2^q. The integer converts with one correct
  // rounding; scaling by 2^q (q >= -27) is exact.
  const std::uint64_t m = w / kPow5U64[-q];
  bits = ToBits(static_cast<double>(m) / static_cast<double>(std::uint64_t(1) << -q));
  return true;
}

namespace {

// The body of DecimalToDouble, inlined into both public entry points.
inline double Convert(const DecimalText& d) {
  double magnitude = 0.0;
  switch (d.kind) {
  case DecimalText::kNone:
    return 0.0;
  case DecimalText::kInfinity:
    magnitude = std::numeric_limits<double>::infinity();
    break;
  case DecimalText::kNaN:
    magnitude = std::numeric_limits<double>::quiet_NaN();
    break;
  case DecimalText::kNumber:
    if (d.digitCount == 0 || d.leadExponent < kMinLeadExponent) {
      magnitude = 0.0;
    } else if (d.leadExponent > kMaxLeadExponent) {
      magnitude = std::numeric_limits<double>::infinity();
    } else {
      // Here WExponent() lies in [kMinPow5, kMaxPow5].
      const std::int64_t q = d.WExponent();
      std::uint64_t bits = 0;
      if (!d.truncated) {
        if (ClingerFastPath(d.w, q, magnitude))
          break;
        if (!EiselLemire(d.w, q, bits) && !ExactDyadic(d.w, q, bits))
          bits = BigDecimalToBits(d);
      } else {
        // The value lies strictly between w * 10^q and (w + 1) * 10^q; when
        // both round to the same double, so does the value.
        std::uint64_t upper = 0;
        if (!EiselLemire(d.w, q, bits) || !EiselLemire(d.w + 1, q, upper) || bits != upper)
          bits = BigDecimalToBits(d);
      }
      magnitude = FromBits(bits);
    }
    break;
  }
  return d.negative ? -magnitude : magnitude;
}

} // namespace

double DecimalToDouble(const DecimalText& d) { return Convert(d); }

double ReadDouble(const char* s, const char** end) {
  const DecimalText d = ScanDecimal(s, Unbounded());
  if (end != nullptr)
    *end = d.end;
  return Convert(d);
}

} // namespace TarnFormatDetail
