//===- text/ShortestDigitsExact.cpp - Free-format digits, exact shortcuts --===//
//
// Two ways of getting the free-format generator's digits exactly without big
// numbers. Values whose decimal expansion is short (1.5, 0.25, 12345.0) are
// read off that expansion directly; values of moderate exponent run the
// generator on exact 128-bit integers. The fixed-point path cannot decide
// the former at all (their remainders fall exactly on a digit boundary), and
// the latter covers ties and near-ties it cannot decide.
//
//===----------------------------------------------------------------------===//
#include "ShortestDigitsInternal.h"

#include <cstddef>
#include <cstring>

namespace tarn_detail {

const uint64_t kPow10U64[20] = {1ULL,
                                10ULL,
                                100ULL,
                                1000ULL,
                                10000ULL,
                                100000ULL,
                                1000000ULL,
                                10000000ULL,
                                100000000ULL,
                                1000000000ULL,
                                10000000000ULL,
                                100000000000ULL,
                                1000000000000ULL,
                                10000000000000ULL,
                                100000000000000ULL,
                                1000000000000000ULL,
                                10000000000000000ULL,
                                100000000000000000ULL,
                                1000000000000000000ULL,
                                10000000000000000000ULL};

namespace {

/// "00" "01" ... "99".
const char kDigitPairs[201] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839404142434445464748495051525354555657585960616263646566676869707172737475767778798081828384858687888990919293949596979899";

/// 5^0 .. 5^27, every power of five below 2^63.
constexpr uint64_t Pow5(int n) { return n == 0 ? 1 : 5 * Pow5(n - 1); }
constexpr int kMaxPow5 = 27;

/// Multiplies x by 10^n when the product stays below 2^120; false otherwise.
bool MulPow10(UInt128& x, int n) {
  UInt128 p = 1;
  for (int i = 0; i < n; ++i)
    p *= 10;
  if (n > 36 || BitLength128(x) + BitLength128(p) > 120)
    return false;
  x *= p;
  return true;
}

} // namespace

namespace {

void PutPair(char* p, uint32_t x) {
  std::memcpy(p, kDigitPairs + 2 * x, 2);
}

/// Eight digits of x < 10^8, as four independent pairs.
void PutEight(char* p, uint32_t x) {
  const uint32_t hi = x / 10000, lo = x % 10000;
  PutPair(p, hi / 100);
  PutPair(p + 2, hi % 100);
  PutPair(p + 4, lo / 100);
  PutPair(p + 6, lo % 100);
}

} // namespace

void WriteDigits(char* p, uint64_t x, int width) {
  while (width > 8) {
    const uint64_t q = x / 100000000;
    PutEight(p + width - 8, static_cast<uint32_t>(x - q * 100000000));
    x = q;
    width -= 8;
  }
  uint32_t y = static_cast<uint32_t>(x);
  while (width >= 2) {
    const uint32_t q = y / 100;
    PutPair(p + width - 2, y - q * 100);
    y = q;
    width -= 2;
  }
  if (width == 1)
    p[0] = char('0' + y % 10);
}

// Let v = W * 10^t with W an integer that is not a multiple of ten, and let
// 10^t exceed the half-gap 2^(e-1) above v (the one below is no larger).
// Every prefix of fewer digits than W, and that prefix plus one unit, is a
// multiple of 10^(t+1) while v is not, so it lies at least 10^t from v:
// outside the rounding interval, and no step before W's last digit
// terminates. The same holds for the next power of ten above v, which fixes
// the scale k at W's length. At W's last digit the remainder is exactly 0,
// inside the interval (low test true), and the digit plus one lies 10^t
// away (high test false): the generator writes W's digits and stops.
bool ShortDecimalDigits(const BinaryValue& v, DecimalDigits& out) {
  const int tz = __builtin_ctzll(v.f);
  const uint64_t odd = v.f >> tz;
  const int e = v.e + tz; // v = odd * 2^e
  uint64_t w;
  int t = 0;
  if (e >= 0) {
    if (BitLength64(odd) + e > 64)
      return false;
    w = odd << e;
    while (w % 10 == 0) {
      w /= 10;
      ++t;
    }
    // 10^t > 2^(v.e - 1); always so when v.e <= 0.
    if (v.e >= 1 && kPow10U64[t] <= (uint64_t(1) << (v.e - 1)))
      return false;
  } else {
    // v = odd * 5^q / 10^q, and odd * 5^q is odd: W = odd * 5^q, t = -q.
    // 10^-q > 2^(v.e - 1) with v.e = -q - tz is 5^q < 2^(tz + 1).
    const int q = -e;
    if (q > kMaxPow5)
      return false;
    static constexpr uint64_t kPow5[kMaxPow5 + 1] = {
        Pow5(0),  Pow5(1),  Pow5(2),  Pow5(3),  Pow5(4),  Pow5(5),  Pow5(6),
        Pow5(7),  Pow5(8),  Pow5(9),  Pow5(10), Pow5(11), Pow5(12), Pow5(13),
        Pow5(14), Pow5(15), Pow5(16), Pow5(17), Pow5(18), Pow5(19), Pow5(20),
        Pow5(21), Pow5(22), Pow5(23), Pow5(24), Pow5(25), Pow5(26), Pow5(27)};
    const uint64_t p5 = kPow5[q];
    if (tz < 63 && p5 >= (uint64_t(1) << (tz + 1)))
      return false;
    if (__builtin_mul_overflow(odd, p5, &w))
      return false;
    t = -q;
  }
  const int n = DecimalLength(w);
  WriteDigits(out.digits, w, n);
  out.count = n;
  out.exponent = n - 1 + t;
  return true;
}

/// Runs the generator exactly on 128-bit integers r, s, m+, m-: possible for
/// values of moderate exponent, whose digits often end exactly (1.5, 12345.0)
/// where the fixed-point path cannot decide. False when the values do not fit.
bool ShortestDigitsExact128(const BinaryValue& v, DecimalDigits& out) {
  const int shift = v.lowerCloser ? 2 : 1;
  UInt128 r, s, mp, mm;
  if (v.e >= 0) {
    if (v.e > 60)
      return false;
    r = UInt128(v.f) << (v.e + shift);
    s = UInt128(1) << shift;
    mp = UInt128(1) << (v.e + shift - 1);
    mm = UInt128(1) << v.e;
  } else {
    if (shift - v.e > 110)
      return false;
    r = UInt128(v.f) << shift;
    s = UInt128(1) << (shift - v.e);
    mp = UInt128(1) << (shift - 1);
    mm = 1;
  }
  int k = EstimateK(v);
  if (k >= 0) {
    if (!MulPow10(s, k))
      return false;
  } else if (!MulPow10(r, -k) || !MulPow10(mp, -k) || !MulPow10(mm, -k)) {
    return false;
  }
  if (v.acceptBounds ? r + mp >= s : r + mp > s) {
    if (!MulPow10(s, 1))
      return false;
    ++k;
  }
  int n = 0;
  for (;;) {
    r *= 10;
    const int d = static_cast<int>(r / s);
    r %= s;
    mm *= 10;
    mp = v.lowerCloser ? mp * 10 : mm;
    const bool tc1 = v.acceptBounds ? r <= mm : r < mm;
    const bool tc2 = v.acceptBounds ? r + mp >= s : r + mp > s;
    if (!tc1 && !tc2) {
      out.digits[n++] = char('0' + d);
      continue;
    }
    const int last = (tc1 && tc2) ? (2 * r < s ? d : d + 1) : (tc2 ? d + 1 : d);
    out.digits[n++] = char('0' + last);
    break;
  }
  out.count = n;
  out.exponent = k - 1;
  return true;
}

} // namespace tarn_detail
