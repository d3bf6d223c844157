//===- text/ShortestDigits.cpp - Shortest digits: fast path first ---------===//
//
// The entry points of the shortest-digit generator: the decomposition of a
// double or float into the value and its rounding interval, and the digits
// from the one-product method of ShortestDecimal.h, or from the exact path
// where that method does not decide.
//
//===----------------------------------------------------------------------===//
#include "ShortestDecimal.h"

#include <cstring>

namespace tarn_detail {
namespace {

/// 5^0 .. 5^27, every power of five below 2^63.
constexpr uint64_t Pow5(int n) { return n == 0 ? 1 : 5 * Pow5(n - 1); }
constexpr int kMaxPow5U64 = 27;
constexpr uint64_t kPow5U64[kMaxPow5U64 + 1] = {
    Pow5(0),  Pow5(1),  Pow5(2),  Pow5(3),  Pow5(4),  Pow5(5),  Pow5(6),  Pow5(7),  Pow5(8),  Pow5(9),
    Pow5(10), Pow5(11), Pow5(12), Pow5(13), Pow5(14), Pow5(15), Pow5(16), Pow5(17), Pow5(18), Pow5(19),
    Pow5(20), Pow5(21), Pow5(22), Pow5(23), Pow5(24), Pow5(25), Pow5(26), Pow5(27)};

} // namespace

bool IsScaledInteger(uint64_t n, int p, int k) {
  if (p + k + __builtin_ctzll(n) < 0)
    return false;
  return k >= 0 || (-k <= kMaxPow5U64 && n % kPow5U64[-k] == 0);
}

namespace {

/// Copies the significant digits of a decimal into out.
void ToDigits(const DecimalValue& d, DecimalDigits& out) {
  char buf[24];
  const DigitRun run = SignificantDigits(buf, d.m, d.exponent);
  std::memcpy(out.digits, run.first, static_cast<size_t>(run.count));
  out.count = run.count;
  out.exponent = run.exponent;
}

} // namespace

BinaryValue DecomposeDouble(double x) {
  uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return DecomposeDoubleBits(bits);
}

BinaryValue DecomposeFloat(float x) {
  uint32_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  const uint32_t frac = bits & ((uint32_t(1) << 23) - 1);
  const int field = static_cast<int>((bits >> 23) & 0xFF);
  BinaryValue v;
  if (field == 0) {
    v.f = frac;
    v.e = -149;
    v.lowerCloser = false;
  } else {
    v.f = frac | (uint32_t(1) << 23);
    v.e = field - 150;
    v.lowerCloser = frac == 0 && field > 1;
  }
  v.acceptBounds = (v.f & 1) == 0;
  return v;
}

void ShortestDigits(const BinaryValue& v, DecimalDigits& out) {
  DecimalValue d;
  if (ShortestDecimalFast(v, d))
    ToDigits(d, out);
  else
    ShortestDigitsExact(v, out);
}

} // namespace tarn_detail
