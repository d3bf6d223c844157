//===- TarnFloatUtil_test.cpp - Floats through their shortest digits ------===//
//
// Oracles: std::to_chars for a float's shortest digits (ties aside, see
// ShortestDigits_test.cpp) and glibc strtod for the double those digits name.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFloatUtil.h"

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

std::string Text(const TarnFloatUtil::FloatNumber& n) {
  return std::string(n.negative ? "-" : "") + std::to_string(n.mantissa) + "e" + std::to_string(n.exponent);
}

} // namespace

TEST(TarnFloatUtil, Pow10Examples) {
  const struct { float x; bool neg; uint32_t m; int e; } cases[] = {
      {-1250.0f, true, 125, 1}, {0.0f, false, 0, 0}, {-0.0f, true, 0, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.m);
    TarnFloatUtil::FloatNumber n{};
    EXPECT_TRUE(TarnFloatUtil::float_to_pow10(c.x, n));
    EXPECT_EQ(n.negative, c.neg);
    EXPECT_EQ(n.mantissa, c.m);
    EXPECT_EQ(n.exponent, c.e);
  }
  TarnFloatUtil::FloatNumber n{true, 7, 7};
  EXPECT_FALSE(TarnFloatUtil::float_to_pow10(std::numeric_limits<float>::quiet_NaN(), n));
  EXPECT_EQ(n.mantissa, 0u);
  EXPECT_FALSE(TarnFloatUtil::float_to_pow10(-std::numeric_limits<float>::infinity(), n));
  EXPECT_TRUE(n.negative);
}

TEST(TarnFloatUtil, RandomFloatsMatchTheOracles) {
  std::mt19937 rng(41);
  int ties = 0;
  for (int i = 0; i < 200000; ++i) {
    uint32_t bits = rng();
    float x;
    std::memcpy(&x, &bits, sizeof x);
    if (!std::isfinite(x))
      continue;
    TarnFloatUtil::FloatNumber n{};
    ASSERT_TRUE(TarnFloatUtil::float_to_pow10(x, n));
    const std::string ours = Text(n);
    // Our digits read back as the same float...
    ASSERT_EQ(std::strtof(ours.c_str(), nullptr), x) << ours;
    // ...are as short as to_chars' and equal unless a tie makes them differ
    // by one unit in the last place.
    char buf[64];
    *std::to_chars(buf, buf + sizeof buf, x, std::chars_format::scientific).ptr = '\0';
    std::string digits;
    for (const char* p = buf; *p && *p != 'e'; ++p)
      if (*p >= '0' && *p <= '9')
        digits += *p;
    while (digits.size() > 1 && digits.back() == '0')
      digits.pop_back();
    const std::string mine = std::to_string(n.mantissa);
    ASSERT_EQ(mine.size(), digits.size()) << ours << " vs " << buf;
    if (mine != digits) {
      // A tie: ours one unit above, and the exact value (a float converts
      // to double exactly; "%.200e" prints all of it) halfway between.
      ++ties;
      ASSERT_EQ(std::stoul(mine), std::stoul(digits) + 1) << ours << " vs " << buf;
      char exact[256];
      std::snprintf(exact, sizeof exact, "%.200e", std::fabs(double(x)));
      std::string e;
      for (const char* p = exact; *p && *p != 'e'; ++p)
        if (*p >= '0' && *p <= '9')
          e += *p;
      e.erase(e.find_last_not_of('0') + 1);
      ASSERT_EQ(e, digits + "5") << ours << " vs " << buf;
      ASSERT_STREQ(std::strchr(exact, 'e'), std::strchr(buf, 'e'));
    }
    // The double is the one strtod makes of those digits.
    const double d = TarnFloatUtil::float_to_double(x);
    ASSERT_EQ(d, std::strtod(ours.c_str(), nullptr)) << ours;
  }
  EXPECT_GT(ties, 0); // the sample does meet ties
}

TEST(TarnFloatUtil, FloatToDoubleKeepsSpecialValues) {
  EXPECT_EQ(TarnFloatUtil::float_to_double(0.1f), 0.1);
  EXPECT_EQ(TarnFloatUtil::float_to_double(3.4028235e38f), 3.4028235e38);
  EXPECT_EQ(TarnFloatUtil::float_to_double(1e-45f), 1e-45);
  EXPECT_TRUE(std::signbit(TarnFloatUtil::float_to_double(-0.0f)));
  EXPECT_TRUE(std::isnan(TarnFloatUtil::float_to_double(std::numeric_limits<float>::quiet_NaN())));
  EXPECT_EQ(TarnFloatUtil::float_to_double(-std::numeric_limits<float>::infinity()),
            -std::numeric_limits<double>::infinity());
}
