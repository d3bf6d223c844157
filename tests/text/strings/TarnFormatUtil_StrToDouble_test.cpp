//===- TarnFormatUtil_StrToDouble_test.cpp - Exactness of the reader --------===//
//
// str_to_double must give the correctly rounded double for every decimal
// text, bit for bit what glibc's strtod gives (glibc rounds correctly). The
// oracles are strtod itself and, for the hardest inputs, texts built from
// exact binary values: glibc's printf("%.800Le") prints the exact decimal
// expansion of a long double, and the midpoint between two adjacent doubles
// is exactly a long double (54 significant bits).
//
// Configure with TARN_LONG_TESTS=ON, or set the environment variable
// TARN_LONG_TESTS=1, for runs a hundred times longer.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cinttypes>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

bool LongTestsWanted() {
#ifdef TARN_LONG_TESTS
  return true;
#else
  const char* flag = std::getenv("TARN_LONG_TESTS");
  return flag != nullptr && *flag != '\0' && std::strcmp(flag, "0") != 0;
#endif
}

// Scales a case count for the long runs.
int Runs(int count) { return LongTestsWanted() ? count * 100 : count; }

std::uint64_t Bits(double d) {
  std::uint64_t b;
  std::memcpy(&b, &d, sizeof b);
  return b;
}

double FromBits(std::uint64_t b) {
  double d;
  std::memcpy(&d, &b, sizeof d);
  return d;
}

// Compares str_to_double with strtod on one text: same bits, same end.
testing::AssertionResult SameAsStrtod(const std::string& text) {
  char* strtodEnd = nullptr;
  const double expected = std::strtod(text.c_str(), &strtodEnd);
  const char* end = nullptr;
  const double actual = TarnFormatUtil::str_to_double(text.c_str(), &end);
  if (Bits(actual) == Bits(expected) && end == strtodEnd)
    return testing::AssertionSuccess();
  char detail[160];
  std::snprintf(detail, sizeof detail, "got %a (%" PRIx64 ", used %td), strtod %a (%" PRIx64
                ", used %td)", actual, Bits(actual), end - text.c_str(), expected,
                Bits(expected), strtodEnd - text.c_str());
  return testing::AssertionFailure() << "text '" << text.substr(0, 200)
                                     << (text.size() > 200 ? "...'" : "'") << ": " << detail;
}

// Runs SameAsStrtod over texts and reports at most a few failures, so that a
// systematic fault does not flood the log.
void ExpectAllSameAsStrtod(const std::vector<std::string>& texts) {
  int failures = 0;
  for (const std::string& t : texts) {
    testing::AssertionResult r = SameAsStrtod(t);
    if (!r && ++failures <= 10)
      ADD_FAILURE() << r.message();
  }
  EXPECT_EQ(failures, 0) << "of " << texts.size() << " texts";
}

std::string RandomDigits(std::mt19937_64& rng, int count) {
  std::string s(count, '0');
  for (char& c : s)
    c = static_cast<char>('0' + rng() % 10);
  return s;
}

// A random decimal text of 1 to maxDigits digits whose first significant
// digit has a decimal exponent in [-345, 330], written in one of several
// layouts: with or without point, leading zeros, exponent letter and sign.
std::string RandomDecimalText(std::mt19937_64& rng, int maxDigits) {
  const int count = 1 + static_cast<int>(rng() % maxDigits);
  std::string digits = RandomDigits(rng, count);
  if (digits[0] == '0')
    digits[0] = static_cast<char>('1' + rng() % 9);
  const int lead = static_cast<int>(rng() % 676) - 345;
  std::string text = (rng() % 4 == 0) ? "-" : (rng() % 8 == 0 ? "+" : "");
  const int layout = static_cast<int>(rng() % 4);
  int exponent = lead;
  if (layout == 0) { // d.ddd
    text += digits.substr(0, 1);
    if (count > 1)
      text += "." + digits.substr(1);
  } else if (layout == 1) { // ddd (integer digits)
    text += digits;
    exponent = lead - (count - 1);
  } else if (layout == 2) { // 0.000ddd
    const int zeros = static_cast<int>(rng() % 5);
    text += "0." + std::string(zeros, '0') + digits;
    exponent = lead + zeros + 1;
  } else { // dd.ddd with the point somewhere inside
    const int point = 1 + static_cast<int>(rng() % count);
    text += digits.substr(0, point) + "." + digits.substr(point);
    exponent = lead - (point - 1);
  }
  if (exponent != 0 || rng() % 2 == 0) {
    text += (rng() % 2 == 0) ? "e" : "E";
    if (exponent >= 0 && rng() % 2 == 0)
      text += "+";
    text += std::to_string(exponent);
  }
  return text;
}

TEST(TarnFormatUtilStrToDouble, RandomTextsOfUpTo40DigitsMatchStrtod) {
  std::mt19937_64 rng(20240611);
  std::vector<std::string> texts;
  for (int i = 0; i < Runs(60000); ++i)
    texts.push_back(RandomDecimalText(rng, 40));
  ExpectAllSameAsStrtod(texts);
}

// Adds +1 or -1 to the last digit of the mantissa of a text such as
// "1.2345000e-17", carrying or borrowing through the digits.
std::string NudgeLastDigit(std::string text, int direction) {
  std::size_t pos = text.find_first_of("eE");
  if (pos == std::string::npos)
    pos = text.size();
  while (pos-- > 0) {
    char& c = text[pos];
    if (c == '.')
      continue;
    if (direction > 0) {
      if (c != '9') {
        ++c;
        return text;
      }
      c = '0';
    } else {
      if (c != '0') {
        --c;
        return text;
      }
      c = '9';
    }
  }
  return direction > 0 ? "1" + text : text; // carry out of the first digit
}

// The exact decimal expansion of the midpoint between the positive finite
// double x and the next larger value (2^1024 above the largest double).
std::string ExactMidpointText(double x) {
  const long double next =
      (x == DBL_MAX) ? std::ldexp(1.0L, 1024) : static_cast<long double>(std::nextafter(x, HUGE_VAL));
  const long double mid = (static_cast<long double>(x) + next) / 2; // exact: 54 bits
  std::vector<char> buf(900);
  std::snprintf(buf.data(), buf.size(), "%.800Le", mid);
  return buf.data();
}

// The mantissa of a "%.800Le" text cut to `digits` significant digits.
std::string CutDigits(const std::string& text, int digits) {
  const std::size_t e = text.find('e');
  return text.substr(0, static_cast<std::size_t>(digits) + 1) + text.substr(e);
}

// For a midpoint text M: M itself (an exact tie), M plus and minus one unit
// in its 801st digit, and M cut to lengths around the 19 digits that the
// fast path holds, each also nudged by one unit.
void AddNearHalfwayTexts(double x, std::vector<std::string>& texts) {
  const std::string mid = ExactMidpointText(x);
  texts.push_back(mid);
  texts.push_back(NudgeLastDigit(mid, +1));
  texts.push_back(NudgeLastDigit(mid, -1));
  for (int digits : {16, 17, 18, 19, 20, 21, 25, 40}) {
    const std::string cut = CutDigits(mid, digits);
    texts.push_back(cut);
    texts.push_back(NudgeLastDigit(cut, +1));
  }
}

TEST(TarnFormatUtilStrToDouble, NearHalfwayCasesMatchStrtod) {
  std::mt19937_64 rng(1996);
  std::vector<std::string> texts;
  for (int i = 0; i < Runs(600); ++i) {
    // Random bit patterns cover every exponent, subnormals included.
    const double x = FromBits(rng() % 0x7FF0000000000000ULL);
    AddNearHalfwayTexts(x, texts);
  }
  // Doubles with short mantissas, whose midpoints have few digits.
  for (int i = 0; i < Runs(300); ++i) {
    const std::uint64_t mantissa = (rng() % 1000) << 42;
    const std::uint64_t exponent = 900 + rng() % 250;
    AddNearHalfwayTexts(FromBits((exponent << 52) | mantissa), texts);
  }
  ExpectAllSameAsStrtod(texts);
}

// The same texts judged by where they lie, without strtod: the exact
// midpoint of x and its successor is a tie (to the even mantissa), one unit
// beyond it rounds up, one unit short and every cut of 17 or more digits
// (below the midpoint, above x) round down; padded beyond 800 digits with
// zeros and a final 1 it rounds up. Above the largest double the successor
// is 2^1024: its midpoint overflows to infinity, the bits after its own.
TEST(TarnFormatUtilStrToDouble, NearHalfwayTextsRoundByWhereTheyLie) {
  std::mt19937_64 rng(2024);
  std::vector<std::uint64_t> picks = {0, 1, 2, 0x000FFFFFFFFFFFFE, 0x000FFFFFFFFFFFFF,
                                      0x0010000000000000, 0x3FEFFFFFFFFFFFFF, 0x3FF0000000000000,
                                      0x433FFFFFFFFFFFFF, 0x4340000000000000, 0x7FEFFFFFFFFFFFFF};
  for (int i = 0; i < Runs(200); ++i)
    picks.push_back(rng() % 0x7FF0000000000000ULL);
  const auto read = [](const std::string& text) {
    const char* end = nullptr;
    const std::uint64_t bits = Bits(TarnFormatUtil::str_to_double(text.c_str(), &end));
    return *end == '\0' ? bits : ~0ULL;
  };
  for (std::uint64_t b : picks) {
    const std::string mid = ExactMidpointText(FromBits(b));
    SCOPED_TRACE(mid.substr(0, 30));
    const std::size_t e = mid.find('e');
    EXPECT_EQ(read(mid), b + (b & 1));
    EXPECT_EQ(read(NudgeLastDigit(mid, +1)), b + 1);
    EXPECT_EQ(read(NudgeLastDigit(mid, -1)), b);
    EXPECT_EQ(read(mid.substr(0, e) + "00001" + mid.substr(e)), b + 1);
    for (int digits = 17; digits <= 40; digits += 1 + static_cast<int>(rng() % 8))
      if (mid.find_first_not_of('0', static_cast<std::size_t>(digits) + 1) < e) { // a real cut
        EXPECT_EQ(read(CutDigits(mid, digits)), b) << digits;
      }
  }
}

TEST(TarnFormatUtilStrToDouble, InputsOf800DigitsMatchStrtod) {
  std::mt19937_64 rng(800);
  std::vector<std::string> texts;
  for (int i = 0; i < Runs(300); ++i) {
    const int count = 780 + static_cast<int>(rng() % 40);
    std::string digits = RandomDigits(rng, count);
    digits[0] = static_cast<char>('1' + rng() % 9);
    const int exponent = static_cast<int>(rng() % 1500) - 1150;
    texts.push_back(digits.substr(0, 1) + "." + digits.substr(1) + "e" +
                    std::to_string(exponent + count));
    texts.push_back("0." + digits + "e" + std::to_string(exponent));
  }
  ExpectAllSameAsStrtod(texts);
}

TEST(TarnFormatUtilStrToDouble, VeryLongTextsAreExactAndBounded) {
  // A tie followed by a million zeros is still a tie; one non-zero digit at
  // the very end turns it upward. Neither may take long.
  const std::string tie = ExactMidpointText(1.0); // 1 + 2^-53
  const std::size_t e = tie.find('e');
  const std::string zeros(1000000, '0');
  const std::string longTie = tie.substr(0, e) + zeros + tie.substr(e);
  const std::string longAbove = tie.substr(0, e) + zeros + "1" + tie.substr(e);
  EXPECT_EQ(TarnFormatUtil::str_to_double(longTie.c_str(), nullptr), 1.0);
  EXPECT_EQ(TarnFormatUtil::str_to_double(longAbove.c_str(), nullptr), std::nextafter(1.0, 2.0));

  // A million significant digits, and a million zeros before the first one.
  std::mt19937_64 rng(3);
  const std::string many = "0." + RandomDigits(rng, 1000000);
  EXPECT_TRUE(SameAsStrtod(many));
  const std::string deep = "0." + zeros + "123e1000010";
  const char* end = nullptr;
  EXPECT_EQ(TarnFormatUtil::str_to_double(deep.c_str(), &end), 1.23e9);
  EXPECT_EQ(static_cast<std::size_t>(end - deep.c_str()), deep.size());
}

TEST(TarnFormatUtilStrToDouble, HugeExponentsSaturate) {
  struct Case { const char* text; double value; };
  const Case cases[] = {
      {"1e999999999999", HUGE_VAL},
      {"-1e999999999999", -HUGE_VAL},
      {"1e99999999999999999999999999999999999999", HUGE_VAL},
      {"0e99999999999999999999999999999999999999", 0.0},
      {"123456789e-99999999999999999999", 0.0},
      {"0.0000000000000000000000000000001e+99999999999999999999", HUGE_VAL},
      {"1000000000000000000000000000000e-9223372036854775808", 0.0},
      {"1e9223372036854775807", HUGE_VAL},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(TarnFormatUtil::str_to_double(c.text, nullptr), c.value);
    EXPECT_TRUE(SameAsStrtod(c.text));
  }
}

TEST(TarnFormatUtilStrToDouble, SubnormalAndOverflowBoundaries) {
  const double minSub = FromBits(1);
  const double maxSub = FromBits(0x000FFFFFFFFFFFFFULL);
  struct Case { std::string text; double value; };
  const std::vector<Case> cases = {
      // The exact midpoints are in NearHalfwayTextsRoundByWhereTheyLie.
      {"2.4703282292062328e-324", minSub},
      {"7.4109846876186982e-324", 2 * minSub}, // 1.5 * minSub rounds to even
      {"2.2250738585072011e-308", maxSub},
      {"2.2250738585072014e-308", DBL_MIN},
      {"1.7976931348623158e308", DBL_MAX},
      {"179769313486231580793728971405301e276", DBL_MAX},
      {"1e309", HUGE_VAL},
      {"10e307", 1e308},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 40));
    EXPECT_EQ(Bits(TarnFormatUtil::str_to_double(c.text.c_str(), nullptr)), Bits(c.value));
    EXPECT_TRUE(SameAsStrtod(c.text));
  }
}

TEST(TarnFormatUtilStrToDouble, PowersOfTenOverTheWholeRange) {
  std::vector<std::string> texts;
  for (int e = -345; e <= 330; ++e) {
    const std::string exponent = "e" + std::to_string(e);
    for (const char* mantissa : {"1", "9", "5", "2.5", "9.999999999999999999999", "4.94065645841246544"})
      texts.push_back(mantissa + exponent);
    // Up to 19 digits around 2^53, on both sides of the fast paths' limits.
    if (e % 3 == 0 && e >= -30 && e <= 30)
      for (const char* w : {"9007199254740991", "9007199254740993", "9007199254740995",
                            "9999999999999999999", "1000000000000000001", "18014398509481985"})
        texts.push_back(w + exponent);
  }
  ExpectAllSameAsStrtod(texts);
}

} // namespace
