//===- TarnFormatUtil_FloatToStr_test.cpp - Shortest text of a float --------===//
//
// float_to_str must print the float's own shortest digits (the oracle is
// std::to_chars for float, shortest round trip) in the free-format layout.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

namespace {

TEST(TarnFormatUtilFloatToStr, LayoutOfTypicalValues) {
  struct Case { float value; const char* text; };
  const Case cases[] = {
      {0.0f, "0.0"},          {-0.0f, "-0.0"},          {0.1f, "0.1"},
      {-2.5f, "-2.5"},        {1.0f, "1.0"},            {1234.5f, "1234.5"},
      {1000.0f, "1000.0"},    {12345.0f, "12345.0"},    {100000.0f, "1.0e+5"},
      {1e10f, "1.0e+10"},     {0.015f, "0.015"},        {0.0015f, "1.5e-3"},
      {0.0001f, "0.0001"},    {1e-5f, "1.0e-5"},        {16777216.0f, "1.6777216e+7"},
      {FLT_MAX, "3.4028235e+38"}, {FLT_MIN, "1.1754944e-38"}, {1e-45f, "1.0e-45"},
      {3.14159274f, "3.1415927"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(TarnFormatUtil::float_to_str(c.value), c.text);
  }
}

TEST(TarnFormatUtilFloatToStr, SpecialValuesUseTheLibraryTexts) {
  EXPECT_EQ(TarnFormatUtil::float_to_str(NAN), "NaN");
  EXPECT_EQ(TarnFormatUtil::float_to_str(HUGE_VALF), "Inf");
  EXPECT_EQ(TarnFormatUtil::float_to_str(-HUGE_VALF), "-Inf");
}

// The significant digits (no leading or trailing zeros) and the decimal
// exponent of the first one, of any decimal text such as "-0.0015" or
// "1.5e-3"; both of those give ("15", -3).
std::pair<std::string, int> DigitsAndExponent(const std::string& text) {
  std::string digits;
  int pointAt = -1, exponent = 0;
  std::size_t i = (text[0] == '-') ? 1 : 0;
  for (; i < text.size() && text[i] != 'e'; ++i) {
    if (text[i] == '.')
      pointAt = static_cast<int>(digits.size());
    else
      digits += text[i];
  }
  if (i < text.size())
    exponent = std::atoi(text.c_str() + i + 1);
  if (pointAt < 0)
    pointAt = static_cast<int>(digits.size());
  const std::size_t first = digits.find_first_not_of('0');
  if (first == std::string::npos)
    return {"0", 0};
  const int lead = pointAt - 1 - static_cast<int>(first) + exponent;
  digits = digits.substr(first);
  digits.erase(digits.find_last_not_of('0') + 1);
  return {digits, lead};
}

TEST(TarnFormatUtilFloatToStr, RandomFloatsGiveTheirShortestDigits) {
  std::mt19937 rng(1234);
  int failures = 0;
  for (int i = 0; i < 50000; ++i) {
    const std::uint32_t bits = static_cast<std::uint32_t>(rng());
    float f;
    std::memcpy(&f, &bits, sizeof f);
    if (!std::isfinite(f))
      continue;
    const std::string text = TarnFormatUtil::float_to_str(f);
    char shortest[32];
    *std::to_chars(shortest, shortest + 31, f, std::chars_format::scientific).ptr = '\0';
    const bool sameDigits = DigitsAndExponent(text) == DigitsAndExponent(shortest);
    const bool readsBack = std::strtof(text.c_str(), nullptr) == f;
    if ((!sameDigits || !readsBack) && ++failures <= 10)
      ADD_FAILURE() << "float " << shortest << " printed as " << text;
  }
  EXPECT_EQ(failures, 0);
}

} // namespace
