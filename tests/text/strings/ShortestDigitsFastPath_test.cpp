//===- ShortestDigitsFastPath_test.cpp - Fast paths against big numbers ---===//
//
// Oracle: the big-number generator, which runs the digit loop exactly. The
// subject: the exact path's shortcuts (short expansions, 128-bit fixed point
// and integers; the one-product fast path before them is compared with the
// whole exact path in ShortestDigits_test.cpp). The inputs aim at the places
// where the shortcuts decide differently from the big numbers:
// digits ending in runs of zeros or nines (where several digits are settled
// at once), values just beside short decimals (remainders next to a digit
// boundary), exact short decimals and integers (read off their expansion,
// with the limit on the expansion's length tried on both sides), and floats.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/detail/ShortestDigits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

namespace {

using tarn_detail::BinaryValue;
using tarn_detail::DecimalDigits;

std::string Text(const DecimalDigits& d) {
  return std::string(d.digits, static_cast<size_t>(d.count)) + "e" + std::to_string(d.exponent);
}

/// Empty when both generators agree on v, else both results.
std::string Compare(const BinaryValue& v) {
  DecimalDigits fast, big;
  tarn_detail::ShortestDigitsExact(v, fast);
  tarn_detail::ShortestDigitsBignum(v, big);
  if (fast.count == big.count && fast.exponent == big.exponent &&
      std::memcmp(fast.digits, big.digits, static_cast<size_t>(big.count)) == 0)
    return std::string();
  return "fast=" + Text(fast) + " big=" + Text(big);
}

/// Compares x and its two neighbours.
void CompareAround(double x) {
  for (double y : {x, std::nextafter(x, 0.0), std::nextafter(x, HUGE_VAL)}) {
    if (!std::isfinite(y) || y == 0)
      continue;
    char hex[64];
    std::snprintf(hex, sizeof hex, "%a", y);
    ASSERT_EQ(Compare(tarn_detail::DecomposeDouble(y)), "") << hex;
  }
}

double Parse(const std::string& digits, int exponent) {
  const std::string text = "0." + digits + "e" + std::to_string(exponent);
  return std::strtod(text.c_str(), nullptr);
}

} // namespace

TEST(ShortestDigitsFastPath, DecimalsOfEveryLengthAndTheirNeighbours) {
  std::mt19937_64 rng(31);
  for (int len = 1; len <= 17; ++len) {
    SCOPED_TRACE(len);
    for (int i = 0; i < 400; ++i) {
      std::string digits(static_cast<size_t>(len), '0');
      for (char& c : digits)
        c = char('0' + rng() % 10);
      digits[0] = char('1' + rng() % 9);
      CompareAround(Parse(digits, static_cast<int>(rng() % 600) - 300));
    }
  }
}

TEST(ShortestDigitsFastPath, DigitsEndingInRunsOfZerosOrNines) {
  // A leading part, then a run of zeros or nines, then a few random digits:
  // the run puts the low or high termination test in the middle of a group
  // of digits settled at once, and the tail moves it just before or after.
  std::mt19937_64 rng(32);
  for (int i = 0; i < 6000; ++i) {
    const size_t head = 1 + rng() % 8, run = 1 + rng() % 14, tail = rng() % 4;
    std::string digits;
    for (size_t j = 0; j < head; ++j)
      digits += char('0' + rng() % 10);
    digits[0] = char('1' + rng() % 9);
    digits.append(run, (i & 1) ? '9' : '0');
    for (size_t j = 0; j < tail; ++j)
      digits += char('0' + rng() % 10);
    SCOPED_TRACE(digits);
    CompareAround(Parse(digits, static_cast<int>(rng() % 640) - 320));
  }
}

TEST(ShortestDigitsFastPath, ExactShortDecimalsAndIntegers) {
  // odd * 2^-q has q decimals; it is read off directly while 5^q stays
  // below the half-gap's reciprocal, so both sides of that limit occur.
  std::mt19937_64 rng(33);
  for (int q = 0; q <= 40; ++q) {
    SCOPED_TRACE(q);
    for (int bits = 1; bits <= 53; bits += 2) {
      const uint64_t odd = ((rng() & ((uint64_t(1) << bits) - 1)) | (uint64_t(1) << (bits - 1))) | 1;
      CompareAround(std::ldexp(static_cast<double>(odd), -q));
    }
  }
  // Integers up to 2^64 with trailing zeros, where the gap may exceed one.
  for (int t = 0; t <= 19; ++t) {
    SCOPED_TRACE(t);
    double p = 1;
    for (int j = 0; j < t; ++j)
      p *= 10;
    for (int i = 0; i < 200; ++i) {
      const double x = static_cast<double>(rng() % 100000 + 1) * p;
      CompareAround(x);
    }
  }
  for (int e = 40; e <= 66; ++e)
    CompareAround(std::ldexp(1.0, e));
}

TEST(ShortestDigitsFastPath, FloatsAgreeWithBigNumbers) {
  std::mt19937 rng(34);
  for (int i = 0; i < 30000; ++i) {
    const uint32_t bits = static_cast<uint32_t>(rng());
    float f;
    std::memcpy(&f, &bits, sizeof f);
    if (!std::isfinite(f) || f == 0)
      continue;
    ASSERT_EQ(Compare(tarn_detail::DecomposeFloat(f)), "") << f;
  }
  for (int i = 1; i < 5000; ++i) {
    const float f = static_cast<float>(i) / 32.0f;
    ASSERT_EQ(Compare(tarn_detail::DecomposeFloat(f)), "") << f;
  }
}
