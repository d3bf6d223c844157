//===- text/ShortestDigitsBignum.cpp - Free-format digits on big numbers --===//
//
// Burger and Dybvig's free-format digit generator, exact on fixed-size big
// numbers of 64-bit digits. The routine names are those of the paper. The
// value v and the half-gaps to its neighbours are held as integer ratios
// r/s, m+/s and m-/s; scaling by 10^k makes r/s fall into [0.1, 1), and each
// step multiplies by ten and takes the integer part as the next digit until
// the remainder lies within the rounding interval.
//
// Sizes: the largest scaled quantities, f * 4 * 10^324 for the smallest
// subnormals and 4 * 10^309 for the largest doubles, are below 2^1140, so
// 24 digits of 64 bits (1536 bits) leave room for one normalising digit and
// the factor ten of each step.
//
//===----------------------------------------------------------------------===//
#include "ShortestDigitsInternal.h"

#include <cassert>
#include <cstring>
#include <memory>

namespace tarn_detail {
namespace {

__extension__ typedef unsigned __int128 u128;

constexpr int BIGSIZE = 24;
constexpr int MAX_FIVE = 325;

/// Digits least significant first; l is the index of the top digit (0 for 0).
struct Bignum {
  int l;
  uint64_t d[BIGSIZE];
};

/// Sets z = 1 << y.
void one_shift_left(int y, Bignum& z) {
  std::memset(z.d, 0, sizeof(z.d));
  z.l = y / 64;
  z.d[z.l] = uint64_t(1) << (y % 64);
}

/// Sets z = x << y for a one-digit x.
void short_shift_left(uint64_t x, int y, Bignum& z) {
  std::memset(z.d, 0, sizeof(z.d));
  const int w = y / 64, b = y % 64;
  z.d[w] = x << b;
  z.l = w;
  if (b != 0 && (x >> (64 - b)) != 0)
    z.d[++z.l] = x >> (64 - b);
}

/// Sets z = x << y; z may be x.
void big_shift_left(const Bignum& x, int y, Bignum& z) {
  const int w = y / 64, b = y % 64;
  int top = x.l + w + 1;
  assert(top < BIGSIZE && "big number overflow");
  for (int i = top; i >= w; --i) {
    const int src = i - w;
    const uint64_t hi = src <= x.l ? x.d[src] : 0;
    const uint64_t lo = src >= 1 ? x.d[src - 1] : 0;
    z.d[i] = b == 0 ? hi : (hi << b) | (lo >> (64 - b));
  }
  for (int i = 0; i < w; ++i)
    z.d[i] = 0;
  for (int i = top + 1; i < BIGSIZE; ++i)
    z.d[i] = 0;
  while (top > 0 && z.d[top] == 0)
    --top;
  z.l = top;
}

/// Sets z = x * y for a one-digit y; z may be x.
void big_short_mul(const Bignum& x, uint64_t y, Bignum& z) {
  uint64_t carry = 0;
  for (int i = 0; i <= x.l; ++i) {
    const u128 t = u128(x.d[i]) * y + carry;
    z.d[i] = static_cast<uint64_t>(t);
    carry = static_cast<uint64_t>(t >> 64);
  }
  z.l = x.l;
  for (int i = x.l + 1; i < BIGSIZE; ++i)
    z.d[i] = 0;
  if (carry != 0) {
    assert(z.l + 1 < BIGSIZE && "big number overflow");
    z.d[++z.l] = carry;
  }
}

/// x = x * 10.
void mul10(Bignum& x) { big_short_mul(x, 10, x); }

/// Sets z = x + y; z may be x or y.
void add_big(const Bignum& x, const Bignum& y, Bignum& z) {
  const int n = x.l > y.l ? x.l : y.l;
  uint64_t carry = 0;
  for (int i = 0; i <= n; ++i) {
    const u128 t = u128(x.d[i]) + y.d[i] + carry;
    z.d[i] = static_cast<uint64_t>(t);
    carry = static_cast<uint64_t>(t >> 64);
  }
  z.l = n;
  if (carry != 0)
    z.d[++z.l] = carry;
}

/// Sets z = x - y for x >= y; z may be x.
void sub_big(const Bignum& x, const Bignum& y, Bignum& z) {
  uint64_t borrow = 0;
  for (int i = 0; i <= x.l; ++i) {
    const uint64_t yi = i <= y.l ? y.d[i] : 0;
    const uint64_t t = x.d[i] - yi - borrow;
    borrow = (x.d[i] < yi || (x.d[i] == yi && borrow)) ? 1 : 0;
    z.d[i] = t;
  }
  int top = x.l;
  while (top > 0 && z.d[top] == 0)
    --top;
  z.l = top;
}

/// -1, 0 or 1 as x is below, equal to or above y.
int big_comp(const Bignum& x, const Bignum& y) {
  if (x.l != y.l)
    return x.l < y.l ? -1 : 1;
  for (int i = x.l; i >= 0; --i)
    if (x.d[i] != y.d[i])
      return x.d[i] < y.d[i] ? -1 : 1;
  return 0;
}

/// Compares r + m with s: -1, 0 or 1.
int add_cmp(const Bignum& r, const Bignum& m, const Bignum& s) {
  Bignum sum;
  add_big(r, m, sum);
  return big_comp(sum, s);
}

/// The scale estimate of the paper: at most one below the exponent k.
int estimate(const BinaryValue& v) { return EstimateK(v); }

/// Returns the digit floor(r / s) and leaves r mod s in r. Requires r < 10 s,
/// both with the same top index and s's top digit in [2^59, 2^60).
int qr(Bignum& r, const Bignum& s) {
  if (r.l < s.l)
    return 0;
  // s_top + 1 over-estimates s / 64^l, so q is at most one below the digit.
  uint64_t q = r.d[s.l] / (s.d[s.l] + 1);
  if (q != 0) {
    Bignum qs;
    big_short_mul(s, q, qs);
    sub_big(r, qs, r);
  }
  while (big_comp(r, s) >= 0) {
    sub_big(r, s, r);
    ++q;
  }
  return static_cast<int>(q);
}

const Bignum* Pow5Table() {
  static const std::unique_ptr<Bignum[]> table = [] {
    std::unique_ptr<Bignum[]> t(new Bignum[MAX_FIVE]());
    t[0].l = 0;
    t[0].d[0] = 1;
    for (int i = 1; i < MAX_FIVE; ++i)
      big_short_mul(t[i - 1], 5, t[i]);
    return t;
  }();
  return table.get();
}

/// z = 10^n * x for 0 <= n < MAX_FIVE: 5^n * x shifted left by n; x < 2^64.
void mul_pow10(uint64_t x, int n, Bignum& z) {
  big_short_mul(Pow5Table()[n], x, z);
  big_shift_left(z, n, z);
}

} // namespace

void InitPow5Bignums() { (void)Pow5Table(); }

void ShortestDigitsBignum(const BinaryValue& v, DecimalDigits& out) {
  // v = f * 2^e; the gaps are 2^e above and 2^e or 2^(e-1) below. Everything
  // is doubled (or quadrupled) so that the half-gaps m+ and m- are integers.
  Bignum r, s, mp, mm;
  const int shift = v.lowerCloser ? 2 : 1;
  if (v.e >= 0) {
    short_shift_left(v.f, v.e + shift, r);
    short_shift_left(uint64_t(1) << shift, 0, s);
    short_shift_left(uint64_t(1) << (shift - 1), v.e, mp);
    one_shift_left(v.e, mm);
  } else {
    short_shift_left(v.f, shift, r);
    one_shift_left(shift - v.e, s);
    short_shift_left(uint64_t(1) << (shift - 1), 0, mp);
    short_shift_left(1, 0, mm);
  }
  int k = estimate(v);
  if (k >= 0) {
    // s = s * 10^k, s a power of two.
    const int sBits = s.l * 64 + BitLength64(s.d[s.l]) - 1;
    big_shift_left(Pow5Table()[k], k + sBits, s);
  } else {
    const int n = -k;
    Bignum t;
    mul_pow10(1, n, t);
    // k < 0 means v < 1, so e < 0 and mp, mm are 1 or 2.
    assert(v.e < 0 && "a value below one has a negative binary exponent");
    big_short_mul(t, mp.d[0], mp);
    mul_pow10(v.f, n, r);
    big_shift_left(r, shift, r);
    mm = t;
  }
  // Fixup: the estimate may be one too small.
  const int high = add_cmp(r, mp, s);
  if (v.acceptBounds ? high >= 0 : high > 0) {
    big_short_mul(s, 10, s);
    ++k;
  }
  // Normalise s's top digit into [2^59, 2^60): r < 10 s then never needs a
  // digit more than s, and qr's estimate is at most one too small.
  const int lz = __builtin_clzll(s.d[s.l]);
  const int norm = (lz + 60) % 64;
  if (norm != 0) {
    big_shift_left(r, norm, r);
    big_shift_left(s, norm, s);
    big_shift_left(mp, norm, mp);
    big_shift_left(mm, norm, mm);
  }
  const bool same = big_comp(mp, mm) == 0;

  int n = 0;
  for (;;) {
    mul10(r);
    const int d = qr(r, s);
    mul10(mm);
    if (same)
      mp = mm;
    else
      mul10(mp);
    const int lowCmp = big_comp(r, mm);
    const int highCmp = add_cmp(r, mp, s);
    const bool tc1 = v.acceptBounds ? lowCmp <= 0 : lowCmp < 0;
    const bool tc2 = v.acceptBounds ? highCmp >= 0 : highCmp > 0;
    if (!tc1 && !tc2) {
      out.digits[n++] = char('0' + d);
      continue;
    }
    int last = d;
    if (tc1 && tc2) {
      Bignum twice;
      big_shift_left(r, 1, twice);
      last = big_comp(twice, s) < 0 ? d : d + 1;
    } else if (tc2) {
      last = d + 1;
    }
    out.digits[n++] = char('0' + last);
    break;
  }
  out.count = n;
  out.exponent = k - 1;
}

} // namespace tarn_detail
