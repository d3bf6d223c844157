//===- FloatingPointFormatter_test.cpp - Layouts of printed doubles -------===//
//
// Free layout rules by table; fixed precision and scientific layouts against
// glibc printf (which rounds the exact binary value, ties to even); limited
// length by table and by the properties every field must have.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/FloatingPointFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

using FPF = FloatingPointFormatter;

std::string Free(const FPF& f, double x) {
  char buf[FPF::FREE_FORMAT_BUFFER_SIZE];
  char* end = f.WriteFreeFormat(buf, x);
  EXPECT_EQ(*end, '\0');
  return std::string(buf, end);
}

std::string Fixed(double x, int prec, FPF::ExponentStyle style = FPF::EXP_LOWER, bool trim = false) {
  char buf[FPF::FIXED_FORMAT_BUFFER_SIZE];
  return std::string(buf, FPF().WriteFixedPrecFormat(buf, x, prec, style, trim));
}

std::string Sci(double x, int prec, FPF::ExponentStyle style) {
  char buf[FPF::FIXED_FORMAT_BUFFER_SIZE];
  return std::string(buf, FPF().WriteScientificFormat(buf, x, prec, style));
}

std::string Limited(double x, size_t len, FPF::ExponentStyle style = FPF::EXP_LOWER,
                    FPF::PaddingOption pad = FPF::PAD_NONE, char padChar = ' ') {
  std::string buf(std::max<size_t>(len, 8) + 1, '#');
  char* end = FPF().WriteLimitedLength(&buf[0], x, len, style, pad, padChar);
  return std::string(&buf[0], end);
}

double Random(std::mt19937_64& rng) {
  uint64_t b = rng();
  double d;
  std::memcpy(&d, &b, sizeof d);
  return d;
}

} // namespace

// Free format ---------------------------------------------------------------

TEST(FloatingPointFormatter, FreeFormatLayoutWithDefaultSwitches) {
  const struct { double x; const char* text; } cases[] = {
      {0.0, "0.0"}, {-0.0, "-0.0"}, {1.5, "1.5"}, {5.0, "5.0"}, {-2.0, "-2.0"},
      {1000.0, "1000.0"}, {12345.0, "12345.0"}, {100000.0, "1.0e+5"}, {12000.0, "12000.0"},
      {1234.0, "1234.0"}, {1234.5, "1234.5"}, {123456.0, "1.23456e+5"}, {10.25, "10.25"},
      {0.1, "0.1"}, {0.0001, "0.0001"}, {0.00001, "1.0e-5"}, {0.015, "0.015"},
      {0.0015, "1.5e-3"}, {0.001, "0.001"}, {-0.25, "-0.25"},
      // Below one, n - k (digits plus leading zeros) must stay within 17.
      {0.12345678901234567, "1.2345678901234566e-1"}, {0.1234567890123456, "0.1234567890123456"},
      {0.01234567890123456, "1.234567890123456e-2"}, {0.0123456789012345, "0.0123456789012345"},
      {0.012345678901234568, "1.2345678901234568e-2"}, {0.012345678901234, "0.012345678901234"},
      {1e100, "1.0e+100"}, {1.7976931348623157e308, "1.7976931348623157e+308"},
      {5e-324, "5.0e-324"}, {2.5e-308, "2.5e-308"}, {9007199254740993.0, "9.007199254740992e+15"},
      {1125899906842624.25, "1.1258999068426243e+15"},
  };
  FPF f;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Free(f, c.x), c.text);
  }
}

TEST(FloatingPointFormatter, SwitchesMoveThePositionalRange) {
  FPF f;
  EXPECT_EQ(f.GetPosExpFmtSwitch(), 4);
  EXPECT_EQ(f.GetNegExpFmtSwitch(), 2);
  f.SetPosExpFmtSwitch(6);
  EXPECT_EQ(Free(f, 100000.0), "100000.0");
  EXPECT_EQ(Free(f, 1234567.0), "1234567.0");
  EXPECT_EQ(Free(f, 12345678.0), "1.2345678e+7");
  EXPECT_EQ(Free(f, 0.000001), "0.000001"); // one digit: bounded by the positive switch
  f.SetNegExpFmtSwitch(3);
  EXPECT_EQ(Free(f, 0.0015), "0.0015");
  EXPECT_EQ(Free(f, 0.00015), "1.5e-4");
  f.SetNegExpFmtSwitch(8); // beyond the fast layout's six places: n - k <= 17 still holds
  EXPECT_EQ(Free(f, 1.23456789e-8), "0.0000000123456789");
  EXPECT_EQ(Free(f, 1.234567891e-8), "1.234567891e-8");
  f.SetNegExpFmtSwitch(3);
  f.SetPosExpFmtSwitch(0);
  EXPECT_EQ(Free(f, 10.0), "1.0e+1");
  EXPECT_EQ(Free(f, 2.5), "2.5");
  EXPECT_EQ(Free(f, 0.1), "1.0e-1");
  f.SetPosExpFmtSwitch(1000); // the largest double, positionally
  const std::string big = Free(f, -std::numeric_limits<double>::max());
  EXPECT_EQ(big.size(), 1u + 309 + 2);
  EXPECT_EQ(big.substr(0, 18), "-17976931348623157");
  EXPECT_LT(big.size(), FPF::FREE_FORMAT_BUFFER_SIZE);
}

// Fixed precision and scientific --------------------------------------------

TEST(FloatingPointFormatter, FixedPrecisionMatchesPrintf) {
  std::mt19937_64 rng(32);
  char expect[512];
  for (int i = 0; i < 20000; ++i) {
    // Magnitudes from 1e-20 to 1e17, both signs, and precisions 0..25.
    const double x = std::ldexp(double(rng() >> 11), -53) * std::pow(10.0, int(rng() % 37) - 20) *
                     ((rng() & 1) ? -1 : 1);
    const int prec = int(rng() % 26);
    if (std::fabs(x) >= 1e17)
      continue;
    std::snprintf(expect, sizeof expect, "%.*f", prec, x);
    ASSERT_EQ(Fixed(x, prec), expect) << prec;
  }
  const struct { double x; int prec; const char* text; } ties[] = {
      {2.5, 0, "2"}, {3.5, 0, "4"}, {0.125, 2, "0.12"}, {0.375, 2, "0.38"},
      {2.675, 2, "2.67"}, {-0.0, 2, "-0.00"}, {-0.001, 2, "-0.00"}, {123.0, 0, "123"},
      {0.5, 0, "0"}, {1e16, 1, "10000000000000000.0"}};
  for (const auto& t : ties) {
    SCOPED_TRACE(t.text);
    EXPECT_EQ(Fixed(t.x, t.prec), t.text);
  }
}

TEST(FloatingPointFormatter, FixedPrecisionTrimsZerosAndBoundsPrecision) {
  const struct { double x; int prec; const char* text; } cases[] = {
      {1.5, 3, "1.5"}, {2.0, 3, "2"}, {0.0, 4, "0"}, {100.0, 2, "100"}, {0.1, 20, "0.10000000000000000555"},
      {1.25, 1, "1.2"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Fixed(c.x, c.prec, FPF::EXP_LOWER, true), c.text);
  }
  EXPECT_EQ(Fixed(1.5, -3), "2");
  std::string tiny = Fixed(5e-324, 100000);
  EXPECT_EQ(tiny.size(), 2u + FPF::MAX_FIXED_PRECISION);
  EXPECT_EQ(Fixed(std::numeric_limits<double>::quiet_NaN(), 2), "NaN");
  EXPECT_EQ(Fixed(-std::numeric_limits<double>::infinity(), 2), "-Inf");
}

TEST(FloatingPointFormatter, FixedPrecisionOfHugeValuesUsesTheExponentStyle) {
  EXPECT_EQ(Fixed(1e17, 2), "1.00e+17");
  EXPECT_EQ(Fixed(-1.5e300, 3, FPF::EXP_UPPER), "-1.500E+300");
  EXPECT_EQ(Fixed(1.5e20, 3, FPF::EXP_FORTRAN, true), "1.5E+20");
  EXPECT_EQ(Fixed(2e20, 3, FPF::EXP_LOWER, true), "2e+20");
}

TEST(FloatingPointFormatter, ScientificMatchesPrintf) {
  std::mt19937_64 rng(33);
  char expect[512];
  for (int i = 0; i < 20000; ++i) {
    const double x = Random(rng);
    if (!std::isfinite(x))
      continue;
    const int prec = int(rng() % 20);
    std::snprintf(expect, sizeof expect, "%.*E", prec, x);
    ASSERT_EQ(Sci(x, prec, FPF::EXP_FORTRAN), expect);
  }
  EXPECT_EQ(Sci(12345.0, 2, FPF::EXP_LOWER), "1.23e+4");
  EXPECT_EQ(Sci(9.96, 1, FPF::EXP_UPPER), "1.0E+1");
  EXPECT_EQ(Sci(0.0, 1, FPF::EXP_FORTRAN), "0.0E+00");
  EXPECT_EQ(Sci(-1e-300, 0, FPF::EXP_LOWER), "-1e-300");
}

// Limited length ------------------------------------------------------------

TEST(FloatingPointFormatter, LimitedLengthLayouts) {
  const struct { double x; size_t len; FPF::ExponentStyle style; const char* text; } cases[] = {
      {3.14159265, 6, FPF::EXP_LOWER, "3.1416"},
      {123456789.0, 6, FPF::EXP_LOWER, "1.2e+8"},
      {123456789.0, 9, FPF::EXP_LOWER, "123456789"},
      {123456789.0, 11, FPF::EXP_LOWER, "123456789.0"},
      {1.0, 8, FPF::EXP_LOWER, "1.0"},
      {0.0, 8, FPF::EXP_LOWER, "0.0"},
      {-0.000012346, 9, FPF::EXP_LOWER, "-1.235e-5"},
      {0.1, 20, FPF::EXP_LOWER, "0.1"},
      {1e-20, 8, FPF::EXP_LOWER, "1.0e-20"},
      {1.5e-7, 8, FPF::EXP_FORTRAN, "1.5E-07"},
      {9.99e9, 5, FPF::EXP_LOWER, "1e+10"}, // rounding widens the exponent
      {9.99e9, 6, FPF::EXP_LOWER, "1e+10"},
      {1.5e300, 7, FPF::EXP_LOWER, "2e+300"}, // the exponent takes 4 of 7
      {1.5e300, 8, FPF::EXP_LOWER, "1.5e+300"},
      {-1.5e300, 8, FPF::EXP_LOWER, "-2e+300"},
      {99.96, 4, FPF::EXP_LOWER, "100"}, // "100.0" would not fit
      {std::numeric_limits<double>::infinity(), 5, FPF::EXP_LOWER, "Inf"},
      {std::numeric_limits<double>::quiet_NaN(), 2, FPF::EXP_LOWER, "**"},
      {123456.0, 3, FPF::EXP_LOWER, "***"},
      {5.0, 0, FPF::EXP_LOWER, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Limited(c.x, c.len, c.style), c.text);
  }
}

TEST(FloatingPointFormatter, LimitedLengthPadding) {
  EXPECT_EQ(Limited(1.5, 6, FPF::EXP_LOWER, FPF::PAD_LEFT, ' '), "   1.5");
  EXPECT_EQ(Limited(1.5, 6, FPF::EXP_LOWER, FPF::PAD_RIGHT, '_'), "1.5___");
  EXPECT_EQ(Limited(-1.5, 6, FPF::EXP_LOWER, FPF::PAD_LEFT, '0'), "00-1.5");
  EXPECT_EQ(Limited(1.5, 6, FPF::EXP_LOWER, FPF::PAD_NONE, '_'), "1.5");
  EXPECT_EQ(Limited(123456.0, 3, FPF::EXP_LOWER, FPF::PAD_LEFT, ' '), "***");
}

TEST(FloatingPointFormatter, LimitedLengthFieldsFitAndStayClose) {
  std::mt19937_64 rng(34);
  for (int i = 0; i < 20000; ++i) {
    const double x = std::ldexp(double(rng() >> 11), -53) * std::pow(10.0, int(rng() % 60) - 30) *
                     ((rng() & 1) ? -1 : 1);
    const size_t len = 1 + rng() % 26;
    const std::string text = Limited(x, len, FPF::EXP_LOWER, FPF::PAD_RIGHT, ' ');
    ASSERT_EQ(text.size(), len);
    const std::string body = text.substr(0, text.find(' '));
    if (body.find('*') != std::string::npos)
      continue;
    char* end = nullptr;
    const double back = std::strtod(body.c_str(), &end);
    ASSERT_EQ(*end, '\0') << body;
    // Off by at most half a unit of the last digit shown.
    const size_t e = body.find('e');
    const std::string mant = body.substr(0, e);
    const int expo = e == std::string::npos ? 0 : std::atoi(body.c_str() + e + 1);
    const size_t dot = mant.find('.');
    const int decimals = dot == std::string::npos ? 0 : int(mant.size() - dot - 1);
    const double halfUnit = 0.5 * std::pow(10.0, expo - decimals);
    ASSERT_LE(std::fabs(back - x), halfUnit * (1 + 1e-12) + std::fabs(x) * 1e-16) << body << " x=" << x;
    if (len >= 24) {
      ASSERT_EQ(back, x) << body; // room for every shortest digit
    }
  }
}
