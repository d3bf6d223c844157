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
