//===- TarnBigInteger_test.cpp - Big integers against independent arithmetic -===//
//
// Oracles: unsigned __int128 where values fit, schoolbook decimal addition on
// strings for the identity q * d + r = n, and the compiler's correctly rounded
// integer-to-double conversion.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/math/TarnBigInteger.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using u128 = unsigned __int128;

std::string Dec(const TarnBigInteger& v) {
  std::string s;
  v.PrintAsDec(s);
  return s;
}

std::string Dec128(u128 v) {
  if (v == 0)
    return "0";
  std::string s;
  while (v != 0) {
    s.insert(s.begin(), char('0' + int(v % 10)));
    v /= 10;
  }
  return s;
}

/// Decimal addition of two digit strings, the oracle for q * d + r.
std::string DecAdd(const std::string& a, const std::string& b) {
  std::string out;
  int carry = 0;
  for (size_t i = 0; i < std::max(a.size(), b.size()) || carry; ++i) {
    int s = carry;
    if (i < a.size())
      s += a[a.size() - 1 - i] - '0';
    if (i < b.size())
      s += b[b.size() - 1 - i] - '0';
    out.insert(out.begin(), char('0' + s % 10));
    carry = s / 10;
  }
  return out;
}

/// A random value of up to `digits` 32-bit digits, built by MultAdd.
TarnBigInteger RandomBig(std::mt19937_64& rng, int digits) {
  TarnBigInteger v;
  const int n = 1 + int(rng() % uint64_t(digits));
  for (int i = 0; i < n; ++i)
    v.MultAdd(0xFFFFFFFFu, static_cast<uint32_t>(rng())), v.Add(static_cast<uint32_t>(rng()));
  return v;
}

u128 Random128(std::mt19937_64& rng) {
  const int bits = 1 + int(rng() % 128);
  u128 v = (u128(rng()) << 64) | rng();
  return bits == 128 ? v : v & ((u128(1) << bits) - 1);
}

double Bits(uint64_t b) {
  double d;
  std::memcpy(&d, &b, sizeof d);
  return d;
}

} // namespace

// Against unsigned __int128 ------------------------------------------------

TEST(TarnBigInteger, TextComparisonAndArithmeticMatchInt128) {
  std::mt19937_64 rng(1);
  for (int i = 0; i < 5000; ++i) {
    const u128 v = Random128(rng), w = i % 7 == 0 ? v : Random128(rng);
    const std::string text = Dec128(v);
    SCOPED_TRACE(text + " and " + Dec128(w));
    const TarnBigInteger b(text.c_str()), c(Dec128(w).c_str());
    EXPECT_EQ(Dec(b), text);
    EXPECT_EQ(b.ToUint64(), static_cast<uint64_t>(v));
    std::string bin, expect;
    b.PrintAsBin(bin);
    for (u128 x = v; x != 0; x >>= 1)
      expect.insert(expect.begin(), char('0' + int(x & 1)));
    EXPECT_EQ(bin, expect.empty() ? "0" : expect);
    EXPECT_EQ(b == c, v == w);
    EXPECT_EQ(b != c, v != w);
    EXPECT_EQ(b < c, v < w);
    EXPECT_EQ(c < b, w < v);

    const uint64_t a = rng() >> (rng() % 64), a2 = rng() >> (rng() % 64);
    const uint32_t m = static_cast<uint32_t>(rng()), add = static_cast<uint32_t>(rng());
    TarnBigInteger x(a);
    x.MultAdd(m, add);
    EXPECT_EQ(Dec(x), Dec128(u128(a) * m + add));
    x.Add(0xFFFFFFFFu);
    EXPECT_EQ(Dec(x), Dec128(u128(a) * m + add + 0xFFFFFFFFu));
    TarnBigInteger y(a);
    y.Mult(TarnBigInteger(a2));
    EXPECT_EQ(Dec(y), Dec128(u128(a) * a2));
    const unsigned shift = static_cast<unsigned>(rng() % 64);
    TarnBigInteger z(a);
    z.Pow2Mult(shift);
    EXPECT_EQ(Dec(z), Dec128(u128(a) << shift));

    const uint32_t d = static_cast<uint32_t>(rng() >> (rng() % 32)) | 1u;
    TarnBigInteger q(b), h(b);
    EXPECT_EQ(q.Div(d), uint32_t(v % d));
    EXPECT_EQ(Dec(q), Dec128(v / d));
    EXPECT_EQ(h.Div2(), uint32_t(v & 1));
    EXPECT_EQ(Dec(h), Dec128(v >> 1));
    const u128 divisor = w == 0 ? 1 : w;
    TarnBigInteger lq(b), rem(7);
    lq.Div(TarnBigInteger(Dec128(divisor).c_str()), &rem);
    EXPECT_EQ(Dec(lq), Dec128(v / divisor));
    EXPECT_EQ(Dec(rem), Dec128(v % divisor));
  }
  // Leading zeros are read and dropped; long texts grow the capacity; a
  // carry adds a digit.
  EXPECT_EQ(Dec(TarnBigInteger("000123")), "123");
  const std::string big(300, '9');
  TarnBigInteger nines(big.c_str());
  EXPECT_EQ(Dec(nines), big);
  EXPECT_GE(nines.GetCapacity(), 32u);
  TarnBigInteger carry(~uint64_t(0));
  carry.Add(1);
  EXPECT_EQ(Dec(carry), "18446744073709551616");
  EXPECT_EQ(carry.GetMsbIdx(), 2u);
  TarnBigInteger digits(0x12345678ABCDEF01ULL);
  digits.Pow2Mult(32);
  EXPECT_TRUE(digits.GetDigit(0) == 0 && digits.GetDigit(1) == 0xABCDEF01u &&
              digits.GetDigit(2) == 0x12345678u);
  TarnBigInteger zero(0);
  zero.Pow2Mult(1000);
  EXPECT_TRUE(zero.IsZero());
}

// Value semantics -----------------------------------------------------------

namespace {

/// The value's decimal text after checking the digit invariant: every digit
/// above the msb index is zero, the one at it is not (unless the value is 0).
std::string CheckedDec(const TarnBigInteger& v) {
  for (uint64_t i = v.GetMsbIdx() + 1; i < v.GetCapacity(); ++i)
    EXPECT_EQ(v.GetDigit(i), 0u) << "digit " << i;
  EXPECT_TRUE(v.GetMsbIdx() == 0 || v.GetDigit(v.GetMsbIdx()) != 0);
  return Dec(v);
}

} // namespace

TEST(TarnBigInteger, CopiesMovesAndSwapsInlineAndHeapValues) {
  // Small and 2^500-sized values stay inline; 2^1000 and 2^5000 live on the heap.
  std::vector<TarnBigInteger> values(4, TarnBigInteger(12345));
  values[1].Pow2Mult(500 - 14);
  values[2].Pow2Mult(1000);
  values[3].Pow2Mult(5000);
  for (const TarnBigInteger& a : values)
    for (const TarnBigInteger& b : values) {
      const std::string da = Dec(a), db = Dec(b);
      SCOPED_TRACE(std::to_string(a.NumBits()) + " bits from " + std::to_string(b.NumBits()));
      TarnBigInteger copy(a);
      EXPECT_EQ(CheckedDec(copy), da);
      TarnBigInteger from(a), moved(std::move(from));
      EXPECT_EQ(CheckedDec(moved), da);
      EXPECT_EQ(CheckedDec(from), "0");
      from = b; // a moved-from value takes new ones
      EXPECT_EQ(CheckedDec(from), db);
      TarnBigInteger copyTo(b);
      copyTo = a;
      EXPECT_EQ(CheckedDec(copyTo), da);
      TarnBigInteger moveTo(b), source(a);
      moveTo = std::move(source);
      EXPECT_EQ(CheckedDec(moveTo), da);
      EXPECT_EQ(CheckedDec(source), "0");
      source = b;
      EXPECT_EQ(CheckedDec(source), db);
      TarnBigInteger x(a), y(b);
      std::swap(x, y);
      EXPECT_EQ(CheckedDec(x), db);
      EXPECT_EQ(CheckedDec(y), da);
      x = x;
      EXPECT_EQ(CheckedDec(x), db);
    }
  // Growing a vector moves every element.
  std::vector<TarnBigInteger> grown;
  for (int i = 0; i < 40; ++i)
    grown.push_back(values[i % 4]);
  for (int i = 0; i < 40; ++i)
    EXPECT_EQ(grown[i], values[i % 4]);
}

TEST(TarnBigInteger, Pow5MultBeyondTheTableSquaresTheLastRecord) {
  // 16384 * 8 + 3 = 131075 has bit 14 of n / 8 set: past record 11.
  const uint64_t n = 16384 * 8 + 3;
  TarnBigInteger v(3);
  v.Pow5Mult(n);
  TarnBigInteger slow(3);
  const uint32_t fivePow13 = 1220703125u;
  for (uint64_t k = 0; k < n / 13; ++k)
    slow.MultAdd(fivePow13, 0);
  for (uint64_t k = 0; k < n % 13; ++k)
    slow.MultAdd(5, 0);
  EXPECT_EQ(v, slow);
  // 3 * 5^131075 has floor(log2(3) + 131075 log2(5)) + 1 bits.
  EXPECT_EQ(v.NumBits(), uint64_t(std::floor(std::log2(3.0) + 131075 * std::log2(5.0))) + 1);
}

TEST(TarnBigInteger, LongDivisionSatisfiesQuotientTimesDivisorPlusRemainder) {
  std::mt19937_64 rng(10);
  for (int i = 0; i < 400; ++i) {
    const TarnBigInteger n = RandomBig(rng, 60);
    const TarnBigInteger d = i % 2 ? RandomBig(rng, 30) : n;
    SCOPED_TRACE(Dec(n) + " / " + Dec(d));
    TarnBigInteger q(n), r, q2(n);
    q.Div(d, &r);
    EXPECT_TRUE(r < d);
    TarnBigInteger qd(q);
    qd.Mult(d);
    EXPECT_EQ(DecAdd(Dec(qd), Dec(r)), Dec(n));
    // Without a remainder pointer the quotient is the same.
    q2.Div(d, nullptr);
    EXPECT_EQ(q2, q);
    // A product divided by one factor gives the other, without remainder.
    qd.Div(d, &r);
    EXPECT_EQ(qd, q);
    EXPECT_TRUE(r.IsZero());
  }
  // A divisor whose top digit needs no normalising shift, and a quotient
  // digit whose first estimate is too large (Knuth's add-back case).
  TarnBigInteger n("340282366920938463463374607431768211455"); // 2^128 - 1
  TarnBigInteger d("18446744073709551615");                      // 2^64 - 1
  TarnBigInteger r(5);
  n.Div(d, &r);
  EXPECT_EQ(Dec(n), "18446744073709551617");
  EXPECT_TRUE(r.IsZero());
  EXPECT_THROW(n.Div(0u), ZEL_Failure);
  EXPECT_THROW(n.Div(TarnBigInteger(), &r), ZEL_Failure);
  EXPECT_EQ(Dec(n), "18446744073709551617");
}

// Conversion to double ------------------------------------------------------

TEST(TarnBigInteger, ToDoubleMatchesCorrectlyRoundedConversion) {
  std::mt19937_64 rng(12);
  for (int i = 0; i < 20000; ++i) {
    const u128 n = Random128(rng);
    const int e2 = int(rng() % 400) - 200;
    TarnBigInteger v(Dec128(n).c_str());
    // The compiler's unsigned __int128 -> double rounds to nearest even,
    // and scaling by a power of two is exact in the normal range.
    EXPECT_EQ(v.ToDouble(e2, 0), std::ldexp(static_cast<double>(n), e2)) << Dec128(n) << " e2=" << e2;
  }
  // A positive sticky breaks ties upwards and raises an exact value one unit.
  TarnBigInteger v((uint64_t(1) << 53) + 1);
  EXPECT_EQ(v.ToDouble(0, 0), 9007199254740992.0);
  EXPECT_EQ(v.ToDouble(0, 1), 9007199254740994.0);
  EXPECT_EQ(TarnBigInteger(1).ToDouble(0, 1), 1.0 + std::ldexp(1.0, -52));
  EXPECT_EQ(TarnBigInteger().ToDouble(5, 1), 0.0);
}

TEST(TarnBigInteger, ToDoubleHandlesTheExtremes) {
  TarnBigInteger one(1);
  EXPECT_EQ(one.ToDouble(1023, 0), std::ldexp(1.0, 1023));
  EXPECT_EQ(one.ToDouble(1024, 0), std::numeric_limits<double>::infinity());
  TarnBigInteger maxMant((uint64_t(1) << 53) - 1);
  EXPECT_EQ(maxMant.ToDouble(971, 0), std::numeric_limits<double>::max());
  EXPECT_EQ(maxMant.ToDouble(972, 0), std::numeric_limits<double>::infinity());
  EXPECT_EQ(one.ToDouble(1 << 20, 0), std::numeric_limits<double>::infinity());
  // Subnormals: exact ones, half the smallest (rounds up), and below.
  EXPECT_EQ(one.ToDouble(-1074, 0), Bits(1));
  EXPECT_EQ(TarnBigInteger(3).ToDouble(-1074, 0), Bits(3));
  EXPECT_EQ(one.ToDouble(-1022, 0), std::numeric_limits<double>::min());
  EXPECT_EQ(one.ToDouble(-1075, 0), Bits(1));
  EXPECT_EQ(one.ToDouble(-1076, 0), 0.0);
  EXPECT_EQ(one.ToDouble(-5000, 0), 0.0);
  TarnBigInteger big(1);
  big.Pow2Mult(5000);
  EXPECT_EQ(big.ToDouble(-5000 - 1074, 0), Bits(1));
  EXPECT_EQ(big.ToDouble(-4000, 0), std::ldexp(1.0, 1000));
}

