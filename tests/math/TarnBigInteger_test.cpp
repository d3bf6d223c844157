//===- TarnBigInteger_test.cpp - Big integers against independent arithmetic -===//
//
// Oracles: GMP's integers for text, comparison and arithmetic, and the
// compiler's correctly rounded unsigned __int128 -> double conversion.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/math/TarnBigInteger.h"

#include "math/MathTestSupport.h"

#include <gmpxx.h>

#include <utility>

using math_test::FromBits;

namespace {

using u128 = unsigned __int128;

std::string Dec(const TarnBigInteger& v) {
  std::string s;
  v.PrintAsDec(s);
  return s;
}

/// A value of up to `digits` 32-bit digits; the digits are often all zeros or
/// all ones, where carries and borrows run far.
mpz_class RandomMpz(std::mt19937_64& rng, int digits) {
  mpz_class v = 0;
  for (int i = 1 + int(rng() % uint64_t(digits)); i > 0; --i) {
    const uint32_t r = uint32_t(rng()), kinds[] = {0u, 0xFFFFFFFFu, r >> (r % 32), r};
    v = (v << 32) + kinds[rng() % 4];
  }
  return v;
}

TarnBigInteger Big(const mpz_class& v) { return TarnBigInteger(v.get_str().c_str()); }

u128 Random128(std::mt19937_64& rng) {
  const int bits = 1 + int(rng() % 128);
  const u128 v = (u128(rng()) << 64) | rng();
  return bits == 128 ? v : v & ((u128(1) << bits) - 1);
}

} // namespace

TEST(TarnBigInteger, TextComparisonAndArithmeticMatchGmp) {
  std::mt19937_64 rng(1);
  for (int i = 0; i < 3000; ++i) {
    const int digits = i % 3 ? 4 : 60;
    const mpz_class v = RandomMpz(rng, digits), w = i % 7 == 0 ? v : RandomMpz(rng, digits / 2 + 1);
    SCOPED_TRACE(v.get_str() + " and " + w.get_str());
    const TarnBigInteger b = Big(v), c = Big(w);
    EXPECT_EQ(Dec(b), v.get_str());
    EXPECT_EQ(b.ToUint64(), mpz_class(v & mpz_class("18446744073709551615")).get_ui());
    std::string bin;
    b.PrintAsBin(bin);
    EXPECT_EQ(bin, v.get_str(2));
    EXPECT_EQ(b == c, v == w);
    EXPECT_EQ(b != c, v != w);
    EXPECT_EQ(b < c, v < w);
    EXPECT_EQ(c < b, w < v);
    EXPECT_EQ(b.NumBits(), v == 0 ? 0 : mpz_sizeinbase(v.get_mpz_t(), 2));

    const uint32_t m = uint32_t(rng()), add = uint32_t(rng()), d = uint32_t(rng() >> (rng() % 32)) | 1u;
    TarnBigInteger x(b), y(b), z(b), q(b), h(b);
    x.MultAdd(m, add);
    EXPECT_EQ(Dec(x), mpz_class(v * m + add).get_str());
    x.Add(0xFFFFFFFFu);
    EXPECT_EQ(Dec(x), mpz_class(v * m + add + 0xFFFFFFFFu).get_str());
    y.Mult(c);
    EXPECT_EQ(Dec(y), mpz_class(v * w).get_str());
    const unsigned shift = unsigned(rng() % 100);
    z.Pow2Mult(shift);
    EXPECT_EQ(Dec(z), mpz_class(v << shift).get_str());
    EXPECT_EQ(q.Div(d), mpz_class(v % d).get_ui());
    EXPECT_EQ(Dec(q), mpz_class(v / d).get_str());
    EXPECT_EQ(h.Div2(), mpz_class(v % 2).get_ui());
    EXPECT_EQ(Dec(h), mpz_class(v / 2).get_str());
    const mpz_class divisor = w == 0 ? 1 : w;
    TarnBigInteger lq(b), rem(7), lq2(b);
    lq.Div(Big(divisor), &rem);
    EXPECT_EQ(Dec(lq), mpz_class(v / divisor).get_str());
    EXPECT_EQ(Dec(rem), mpz_class(v % divisor).get_str());
    lq2.Div(Big(divisor), nullptr);
    EXPECT_EQ(lq2, lq);
  }
  // Leading zeros are dropped; long texts grow the capacity; a carry adds a
  // digit.
  EXPECT_EQ(Dec(TarnBigInteger("000123")), "123");
  const std::string big(300, '9');
  TarnBigInteger nines(big.c_str());
  EXPECT_EQ(Dec(nines), big);
  EXPECT_GE(nines.GetCapacity(), 32u);
  TarnBigInteger carry(~uint64_t(0));
  carry.Add(1);
  EXPECT_EQ(carry.GetMsbIdx(), 2u);
  TarnBigInteger zero(0);
  zero.Pow2Mult(1000);
  EXPECT_TRUE(zero.IsZero());
  // A quotient digit whose first estimate is too large (Knuth's add-back
  // case); division by zero is refused and changes nothing.
  TarnBigInteger n("340282366920938463463374607431768211455"), r(5); // 2^128 - 1
  n.Div(TarnBigInteger("18446744073709551615"), &r);                   // 2^64 - 1
  EXPECT_EQ(Dec(n), "18446744073709551617");
  EXPECT_TRUE(r.IsZero());
  EXPECT_THROW(n.Div(0u), ZEL_Failure);
  EXPECT_THROW(n.Div(TarnBigInteger(), &r), ZEL_Failure);
  EXPECT_EQ(Dec(n), "18446744073709551617");
}

TEST(TarnBigInteger, CopiesMovesAndSwapsInlineAndHeapValues) {
  // Small and 2^500-sized values stay inline; 2^1000 and 2^5000 live on the heap.
  std::vector<TarnBigInteger> values(4, TarnBigInteger(12345));
  values[1].Pow2Mult(500 - 14);
  values[2].Pow2Mult(1000);
  values[3].Pow2Mult(5000);
  // The decimal text after checking that no digit above the msb index is set.
  const auto checked = [](const TarnBigInteger& v) {
    for (uint64_t i = v.GetMsbIdx() + 1; i < v.GetCapacity(); ++i)
      EXPECT_EQ(v.GetDigit(i), 0u) << "digit " << i;
    EXPECT_TRUE(v.GetMsbIdx() == 0 || v.GetDigit(v.GetMsbIdx()) != 0);
    return Dec(v);
  };
  for (const TarnBigInteger& a : values)
    for (const TarnBigInteger& b : values) {
      const std::string da = Dec(a), db = Dec(b);
      SCOPED_TRACE(std::to_string(a.NumBits()) + " bits from " + std::to_string(b.NumBits()));
      TarnBigInteger from(a), moved(std::move(from)), copyTo(b), moveTo(b), source(a);
      EXPECT_EQ(checked(moved), da);
      EXPECT_EQ(checked(from), "0");
      from = b; // a moved-from value takes new ones
      EXPECT_EQ(checked(from), db);
      copyTo = a;
      EXPECT_EQ(checked(copyTo), da);
      moveTo = std::move(source);
      EXPECT_EQ(checked(moveTo), da);
      EXPECT_EQ(checked(source), "0");
      std::swap(moveTo, from);
      EXPECT_TRUE(checked(moveTo) == db && checked(from) == da);
      from = from;
      EXPECT_EQ(checked(from), da);
    }
}

TEST(TarnBigInteger, Pow5MultBeyondTheTableSquaresTheLastRecord) {
  // 16384 * 8 + 3 = 131075 has bit 14 of n / 8 set: past record 11.
  const uint64_t n = 16384 * 8 + 3;
  TarnBigInteger v(3);
  v.Pow5Mult(n);
  mpz_class expected;
  mpz_ui_pow_ui(expected.get_mpz_t(), 5, n);
  EXPECT_EQ(Dec(v), mpz_class(3 * expected).get_str());
}

TEST(TarnBigInteger, ToDoubleMatchesCorrectlyRoundedConversion) {
  std::mt19937_64 rng(12);
  for (int i = 0; i < 20000; ++i) {
    const u128 n = Random128(rng);
    const int e2 = int(rng() % 400) - 200;
    const TarnBigInteger v = Big((mpz_class(uint64_t(n >> 64)) << 64) + uint64_t(n));
    // Scaling by a power of two is exact in the normal range.
    EXPECT_EQ(v.ToDouble(e2, 0), std::ldexp(static_cast<double>(n), e2)) << Dec(v) << " e2=" << e2;
  }
  // A positive sticky breaks ties upwards and raises an exact value one unit.
  const TarnBigInteger zero, one(1), three(3), max53((uint64_t(1) << 53) - 1), tie((uint64_t(1) << 53) + 1);
  TarnBigInteger big(1);
  big.Pow2Mult(5000);
  const double inf = std::numeric_limits<double>::infinity();
  const struct {
    const TarnBigInteger& v;
    int64_t e2;
    int sticky;
    double expected;
  } rows[] = {
      {tie, 0, 0, 9007199254740992.0}, {tie, 0, 1, 9007199254740994.0},
      {one, 0, 1, 1.0 + std::ldexp(1.0, -52)}, {zero, 5, 1, 0.0},
      {one, 1023, 0, std::ldexp(1.0, 1023)}, {one, 1024, 0, inf},
      {max53, 971, 0, std::numeric_limits<double>::max()}, {max53, 972, 0, inf},
      {one, 1 << 20, 0, inf}, {one, -1074, 0, FromBits(1)}, {three, -1074, 0, FromBits(3)},
      {one, -1022, 0, std::numeric_limits<double>::min()}, {one, -1075, 0, FromBits(1)}, // half rounds up
      {one, -1076, 0, 0.0}, {one, -5000, 0, 0.0}, {big, -5000 - 1074, 0, FromBits(1)},
      {big, -4000, 0, std::ldexp(1.0, 1000)},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.v.ToDouble(row.e2, row.sticky), row.expected) << Dec(row.v) << " e2=" << row.e2;
}
