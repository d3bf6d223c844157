//===- ShortestDigits_test.cpp - Shortest digits against std::to_chars ----===//
//
// Oracle: libstdc++'s std::to_chars (shortest, scientific). The two agree on
// every value except exact ties between two shortest candidates, where this
// generator takes the upper one and to_chars the even one; a difference is
// accepted only when the exact binary value (glibc's "%.800e" prints it
// completely) lies exactly halfway between them.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/FloatingPointFormatter.h"
#include "TarnUtilities/text/detail/ShortestDigits.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

using tarn_detail::DecimalDigits;

struct Sci {
  std::string digits; // no trailing zeros
  int exponent;
};

Sci Ours(double x, bool bignum) {
  DecimalDigits d;
  const tarn_detail::BinaryValue v = tarn_detail::DecomposeDouble(x);
  if (bignum)
    tarn_detail::ShortestDigitsBignum(v, d);
  else
    tarn_detail::ShortestDigits(v, d);
  return {std::string(d.digits, static_cast<size_t>(d.count)), d.exponent};
}

/// Parses "d.ddde+XX" (or "de+XX") into digits without trailing zeros.
Sci ParseSci(const char* text) {
  Sci s;
  const char* p = text;
  if (*p == '-')
    ++p;
  for (; *p && *p != 'e'; ++p)
    if (*p != '.')
      s.digits += *p;
  s.exponent = *p == 'e' ? std::atoi(p + 1) : 0;
  while (s.digits.size() > 1 && s.digits.back() == '0')
    s.digits.pop_back();
  return s;
}

Sci ToChars(double x) {
  char buf[64];
  const auto r = std::to_chars(buf, buf + sizeof buf, x, std::chars_format::scientific);
  *r.ptr = '\0';
  return ParseSci(buf);
}

/// Exact decimal expansion of |x|, digits without trailing zeros.
Sci Exact(double x) {
  static char buf[1024];
  std::snprintf(buf, sizeof buf, "%.800e", std::fabs(x));
  return ParseSci(buf);
}

/// digits + 1 in the last place, e.g. "129" => "130" (never all nines here).
std::string Increment(std::string s) {
  for (size_t i = s.size(); i-- > 0;) {
    if (s[i] != '9') {
      ++s[i];
      return s;
    }
    s[i] = '0';
  }
  return "1" + s;
}

/// Empty when `ours` is acceptable for x against the oracle, else a reason.
std::string Check(double x, const Sci& ours) {
  const Sci theirs = ToChars(x);
  if (ours.digits == theirs.digits && ours.exponent == theirs.exponent)
    return std::string();
  // Only a tie may differ: same length and exponent, ours one unit above,
  // and the exact value precisely halfway.
  std::string o = ours.digits, t = theirs.digits;
  const size_t n = std::max(o.size(), t.size());
  o.resize(n, '0');
  t.resize(n, '0');
  if (ours.exponent == theirs.exponent && Increment(t) == o) {
    Sci exact = Exact(x);
    if (exact.exponent == ours.exponent && exact.digits == t + "5")
      return std::string();
  }
  char buf[64];
  std::snprintf(buf, sizeof buf, "%a", x);
  return std::string("x=") + buf + " ours=" + ours.digits + "e" + std::to_string(ours.exponent) +
         " to_chars=" + theirs.digits + "e" + std::to_string(theirs.exponent);
}

double FromBits(uint64_t b) {
  double d;
  std::memcpy(&d, &b, sizeof d);
  return d;
}

/// Checks x, its free-format text reading back, and its neighbours.
void CheckAround(double x, const FloatingPointFormatter& fmt) {
  for (double y : {x, std::nextafter(x, 0.0), std::nextafter(x, HUGE_VAL)}) {
    if (!std::isfinite(y) || y == 0)
      continue;
    ASSERT_EQ(Check(y, Ours(y, false)), "");
    ASSERT_EQ(Check(y, Ours(y, true)), "");
    char buf[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
    fmt.WriteFreeFormat(buf, y);
    ASSERT_EQ(std::strtod(buf, nullptr), y) << buf;
  }
}

/// Random patterns in the CI run: 10^6 in every build. TARN_LONG_TESTS (a
/// compile definition or an environment variable holding a count) runs more.
long RandomCount() {
  if (const char* env = std::getenv("TARN_LONG_TESTS"))
    if (std::atol(env) > 0)
      return std::atol(env);
#ifdef TARN_LONG_TESTS
  return 100000000;
#else
  return 1000000;
#endif
}

} // namespace

TEST(ShortestDigits, EveryPowerOfTwoAndItsNeighbours) {
  FloatingPointFormatter fmt;
  for (int e = -1074; e <= 1023; ++e) {
    SCOPED_TRACE(e);
    CheckAround(std::ldexp(1.0, e), fmt);
  }
}

TEST(ShortestDigits, EveryPowerOfTenAndItsNeighbours) {
  FloatingPointFormatter fmt;
  for (int e = -323; e <= 308; ++e) {
    SCOPED_TRACE(e);
    const std::string text = "1e" + std::to_string(e);
    CheckAround(std::strtod(text.c_str(), nullptr), fmt);
  }
}

TEST(ShortestDigits, ExtremesAndSubnormals) {
  FloatingPointFormatter fmt;
  const double cases[] = {std::numeric_limits<double>::max(),
                          std::numeric_limits<double>::min(),
                          std::numeric_limits<double>::denorm_min(),
                          FromBits(0x000FFFFFFFFFFFFFULL), // largest subnormal
                          FromBits(0x0010000000000001ULL),
                          5e-324, 9007199254740993.0, 0.1, 0.2, 0.3, 1.0 / 3, 2.0 / 3};
  for (double x : cases) {
    SCOPED_TRACE(x);
    CheckAround(x, fmt);
  }
  std::mt19937_64 rng(21);
  for (int i = 0; i < 20000; ++i) {
    const double x = FromBits(rng() & 0x000FFFFFFFFFFFFFULL);
    ASSERT_EQ(Check(x, Ours(x, false)), "");
  }
  EXPECT_EQ(Ours(std::numeric_limits<double>::denorm_min(), false).digits, "5");
  EXPECT_EQ(Ours(std::numeric_limits<double>::denorm_min(), false).exponent, -324);
  EXPECT_EQ(Ours(std::numeric_limits<double>::max(), false).digits, "17976931348623157");
  EXPECT_EQ(Ours(std::numeric_limits<double>::max(), false).exponent, 308);
}

TEST(ShortestDigits, ExactTiesTakeTheUpperDigit) {
  FloatingPointFormatter fmt;
  char buf[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
  fmt.WriteFreeFormat(buf, 1125899906842624.25);
  EXPECT_STREQ(buf, "1.1258999068426243e+15");
  // In [2^50, 2^51) the spacing is 1/4: every m + 1/4 and m + 3/4 lies
  // exactly between two 17-digit candidates m.2|m.3 and m.7|m.8.
  std::mt19937_64 rng(22);
  for (int i = 0; i < 2000; ++i) {
    const double m = std::ldexp(1.0, 50) + double(rng() % (uint64_t(1) << 50));
    const double x = m + ((i & 1) ? 0.25 : 0.75);
    for (bool bignum : {false, true}) {
      const Sci ours = Ours(x, bignum);
      ASSERT_EQ(Check(x, ours), "");
      const int last = ours.digits.back() - '0';
      ASSERT_EQ(last, (i & 1) ? 3 : 8) << ours.digits;
    }
  }
}

TEST(ShortestDigits, RandomBitPatternsMatchTheOracle) {
  FloatingPointFormatter fmt;
  std::mt19937_64 rng(23);
  const long count = RandomCount();
  char buf[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
  for (long i = 0; i < count; ++i) {
    const double x = FromBits(rng());
    if (!std::isfinite(x) || x == 0)
      continue;
    const Sci ours = Ours(x, false);
    ASSERT_EQ(Check(x, ours), "");
    fmt.WriteFreeFormat(buf, x);
    ASSERT_EQ(std::strtod(buf, nullptr), x) << buf;
  }
}


// The one-product fast path against the exact path (the digit generator on
// short expansions, fixed point, 128-bit integers and big numbers), digit
// for digit, where they decide differently: exact ties and their
// neighbours, values on an interval's end (integers beside multiples of
// powers of ten), short decimals, subnormals, the extremes, and random bit
// patterns.
TEST(ShortestDigits, FastPathAgreesWithTheExactPath) {
  const auto agree = [](double x) {
    const tarn_detail::BinaryValue v = tarn_detail::DecomposeDouble(x);
    DecimalDigits fast, exact;
    tarn_detail::ShortestDigits(v, fast);
    tarn_detail::ShortestDigitsExact(v, exact);
    return fast.count == exact.count && fast.exponent == exact.exponent &&
           std::memcmp(fast.digits, exact.digits, static_cast<size_t>(exact.count)) == 0;
  };
  const auto agreeAround = [&](double x) {
    for (double y : {x, std::nextafter(x, 0.0), std::nextafter(x, HUGE_VAL)})
      if (std::isfinite(y) && y != 0 && !agree(y))
        return false;
    return true;
  };
  std::mt19937_64 rng(24);
  {
    SCOPED_TRACE("exact ties m + 1/4, m + 3/4 and short exact decimals odd * 2^-j");
    for (int i = 0; i < 2000; ++i) {
      const double m = std::ldexp(1.0, 50) + double(rng() % (uint64_t(1) << 50));
      const double tie = m + ((i & 1) ? 0.25 : 0.75);
      const double dyadic = std::ldexp(double((rng() >> (11 + rng() % 42)) | 1), -int(rng() % 70));
      ASSERT_TRUE(agreeAround(tie)) << std::hexfloat << tie;
      ASSERT_TRUE(agreeAround(dyadic)) << std::hexfloat << dyadic;
    }
  }
  {
    SCOPED_TRACE("integers beside multiples of powers of ten, 2^53 to 2^63");
    for (int j = 1; j <= 18; ++j)
      for (int i = 0; i < 200; ++i) {
        const double base = std::ldexp(1.0, 53 + static_cast<int>(rng() % 10));
        const double p = std::pow(10.0, j), m = std::floor(base / p) * p + p * double(rng() % 7);
        ASSERT_TRUE(agreeAround(m)) << std::hexfloat << m;
      }
  }
  {
    SCOPED_TRACE("hundredths, thousandths, uniform [0, 1)");
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int i = 0; i < 20000; ++i) {
      ASSERT_TRUE(agree(double(rng() % 10000000 + 1) / 100.0)) << i;
      ASSERT_TRUE(agree(double(rng() % 1000000000 + 1) / 1000.0)) << i;
      ASSERT_TRUE(agree(unit(rng) + 1e-300)) << i;
    }
  }
  {
    SCOPED_TRACE("subnormals, the extremes, powers of two and ten");
    for (uint64_t b = 1; b < 3000; ++b) {
      ASSERT_TRUE(agree(FromBits(b))) << b;
      ASSERT_TRUE(agree(FromBits(0x7FEFFFFFFFFFFFFFULL - b))) << b;
      ASSERT_TRUE(agree(FromBits((rng() & 0x000FFFFFFFFFFFFFULL) | 1))) << b;
    }
    for (int e = -1074; e <= 1023; ++e)
      ASSERT_TRUE(agreeAround(std::ldexp(1.0, e))) << e;
    for (int e = -323; e <= 308; ++e)
      ASSERT_TRUE(agreeAround(std::strtod(("1e" + std::to_string(e)).c_str(), nullptr))) << e;
  }
  {
    SCOPED_TRACE("random bit patterns");
    for (long i = 0, n = RandomCount() / 4; i < n; ++i) {
      const double x = FromBits(rng());
      if (std::isfinite(x) && x != 0) {
        ASSERT_TRUE(agree(x)) << std::hexfloat << x;
      }
    }
  }
}
