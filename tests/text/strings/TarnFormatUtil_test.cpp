//===- TarnFormatUtil_test.cpp - Classification and syntax of numbers -------===//
//
// What counts as a number and where it ends: is_int, is_double,
// is_valid_double, the end pointer of str_to_double, and int_to_str. The
// exactness of str_to_double is tested against strtod in
// TarnFormatUtil_StrToDouble_test.cpp.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using NVS = TarnFormatUtil::NumericValueState;

struct ClassCase {
  const char* text;
  bool isInt;
  bool isDouble;
};

// Every text with its answers from is_int and is_double.
const ClassCase kClassCases[] = {
    // Integers are doubles too.
    {"0", true, true}, {"42", true, true}, {"-7", true, true}, {"+007", true, true},
    {"99999999999999999999999999999999", true, true},
    // Decimal numbers; "1e999" is syntax only, its value overflows.
    {"1.5", false, true}, {"-0.5", false, true}, {".5", false, true}, {"5.", false, true},
    {"+.5e-3", false, true}, {"1e300", false, true}, {"1E-3", false, true},
    {"1e+03", false, true}, {"1e999", false, true}, {"0.000", false, true},
    // Not numbers; superscript one ("\xC2\xB9") is not a digit.
    {"", false, false}, {"+", false, false}, {"-", false, false}, {".", false, false},
    {"+.", false, false}, {"e5", false, false}, {".e5", false, false}, {"1e", false, false},
    {"1e+", false, false}, {"1e-x", false, false}, {"1.2.3", false, false},
    {"--1", false, false}, {"+-1", false, false}, {"1-", false, false}, {" 1", false, false},
    {"1 ", false, false}, {"4 2", false, false}, {"0x10", false, false},
    {"1,5", false, false}, {"inf", false, false}, {"NaN", false, false},
    {"1d5", false, false}, {"\xC2\xB9", false, false},
};

TEST(TarnFormatUtil, ClassifiesWholeTexts) {
  for (const ClassCase& c : kClassCases) {
    SCOPED_TRACE(std::string("text '") + c.text + "'");
    EXPECT_EQ(TarnFormatUtil::is_int(c.text), c.isInt);
    EXPECT_EQ(TarnFormatUtil::is_double(c.text), c.isDouble);
    EXPECT_EQ(TarnFormatUtil::is_int(c.text, std::strlen(c.text)), c.isInt);
    EXPECT_EQ(TarnFormatUtil::is_double(c.text, std::strlen(c.text)), c.isDouble);
  }
}

TEST(TarnFormatUtil, CountedFormsLookAtExactlyNCharacters) {
  // The characters after the first n never matter, nor must they be read.
  struct Case { const char* text; std::size_t n; bool isInt; bool isDouble; };
  const Case cases[] = {
      {"123abc", 3, true, true},     {"123abc", 4, false, false}, {"1.5x", 3, false, true},
      {"1.5x", 2, false, true},      {"1e5", 2, false, false},    {"-12", 1, false, false},
      {"12", 0, false, false},       {"+1e+1", 5, false, true},   {"7", 1, true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("text '") + c.text + "' n=" + std::to_string(c.n));
    // Copy the first n characters into an exactly sized heap block so that
    // a read beyond n is caught by the address sanitizer.
    char* block = static_cast<char*>(std::malloc(c.n == 0 ? 1 : c.n));
    std::memcpy(block, c.text, c.n);
    EXPECT_EQ(TarnFormatUtil::is_int(block, c.n), c.isInt);
    EXPECT_EQ(TarnFormatUtil::is_double(block, c.n), c.isDouble);
    EXPECT_EQ(TarnFormatUtil::is_valid_double(block, c.n) != TarnFormatUtil::NVS_INVALID,
              c.isDouble);
    std::free(block);
  }
  // An embedded NUL inside the n characters is not part of a number.
  EXPECT_FALSE(TarnFormatUtil::is_int("12\0" "3", 4));
  EXPECT_FALSE(TarnFormatUtil::is_double("1.\0" "5", 4));
}

TEST(TarnFormatUtil, NullTextIsNeverANumber) {
  EXPECT_FALSE(TarnFormatUtil::is_int(nullptr));
  EXPECT_FALSE(TarnFormatUtil::is_int(nullptr, 3));
  EXPECT_FALSE(TarnFormatUtil::is_double(nullptr));
  EXPECT_FALSE(TarnFormatUtil::is_double(nullptr, 3));
  EXPECT_EQ(TarnFormatUtil::is_valid_double(nullptr, 3), TarnFormatUtil::NVS_INVALID);
  const char* end = "sentinel";
  EXPECT_EQ(TarnFormatUtil::str_to_double(nullptr, &end), 0.0);
  EXPECT_EQ(end, nullptr);
}

TEST(TarnFormatUtil, IsValidDoubleTellsRangeAndSpecialValues) {
  struct Case { const char* text; NVS state; };
  using TFU = TarnFormatUtil;
  const Case cases[] = {
      {"1.5", TFU::NVS_VALID}, {"-0", TFU::NVS_VALID}, {"0e-99999", TFU::NVS_VALID},
      {"1.7976931348623157e308", TFU::NVS_VALID}, {"1.7976931348623159e308", TFU::NVS_OVERFLOW},
      {"-1e400", TFU::NVS_OVERFLOW}, {"1e999999999999999999999", TFU::NVS_OVERFLOW},
      // The smallest subnormal, a text rounding up to it, and texts below.
      {"4.9406564584124654e-324", TFU::NVS_VALID}, {"2.5e-324", TFU::NVS_VALID},
      {"2.4e-324", TFU::NVS_UNDERFLOW}, {"-1e-400", TFU::NVS_UNDERFLOW},
      {"NaN", TFU::NVS_NAN}, {"-nan", TFU::NVS_NAN}, {"Inf", TFU::NVS_INFINITE},
      {"-INFINITY", TFU::NVS_INFINITE}, {"infin", TFU::NVS_INVALID},
      {"nan(1)", TFU::NVS_INVALID}, {"1.5x", TFU::NVS_INVALID}, {"", TFU::NVS_INVALID},
      {" 1", TFU::NVS_INVALID},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("text '") + c.text + "'");
    EXPECT_EQ(TarnFormatUtil::is_valid_double(c.text, std::strlen(c.text)), c.state);
  }
}

// The end pointer and value of str_to_double on texts that end early or
// hold no number. Where `likeStrtod` is set, strtod consumes the same
// characters; the other rows are the documented differences (no blanks
// skipped, no hexadecimal, no "nan(...)").
TEST(TarnFormatUtil, StrToDoubleStopsAfterTheNumber) {
  struct Case { const char* text; std::size_t used; double value; bool likeStrtod; };
  const Case cases[] = {
      {"12abc", 2, 12.0, true},       {"1e+x", 1, 1.0, true},          {"1e", 1, 1.0, true},
      {"1.e5", 4, 1e5, true},         {"1.5.5", 3, 1.5, true},         {"-.5", 3, -0.5, true},
      {"1e5.5", 3, 1e5, true},        {"00012", 5, 12.0, true},        {"1 2", 1, 1.0, true},
      {"1_000", 1, 1.0, true},        {"+-1", 0, 0.0, true},           {".e5", 0, 0.0, true},
      {"", 0, 0.0, true},             {"abc", 0, 0.0, true},           {"-", 0, 0.0, true},
      {"2.5E-3m", 6, 0.0025, true},   {"7e0001", 6, 70.0, true},        {"0.0e-0", 6, 0.0, true},
      {"inf", 3, HUGE_VAL, true},     {"-Infinity!", 9, -HUGE_VAL, true},
      {"infinit", 3, HUGE_VAL, true}, {"INFx", 3, HUGE_VAL, true},     {"in", 0, 0.0, true},
      {" 1", 0, 0.0, false},          {"\t1", 0, 0.0, false},          {"0x10", 1, 0.0, false},
      {"nan(12)", 3, NAN, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("text '") + c.text + "'");
    const char* end = nullptr;
    const double value = TarnFormatUtil::str_to_double(c.text, &end);
    EXPECT_EQ(static_cast<std::size_t>(end - c.text), c.used);
    if (std::isnan(c.value))
      EXPECT_TRUE(std::isnan(value));
    else
      EXPECT_EQ(value, c.value);
    if (c.likeStrtod) {
      char* strtodEnd = nullptr;
      const double expected = std::strtod(c.text, &strtodEnd);
      EXPECT_EQ(end, strtodEnd);
      EXPECT_EQ(std::memcmp(&value, &expected, sizeof value), 0);
    }
    const double again = TarnFormatUtil::str_to_double(c.text, nullptr); // end may be null
    EXPECT_EQ(std::memcmp(&again, &value, sizeof value), 0);
  }
}

TEST(TarnFormatUtil, SignsOfZeroAndNaNAreKept) {
  EXPECT_TRUE(std::signbit(TarnFormatUtil::str_to_double("-0", nullptr)));
  EXPECT_TRUE(std::signbit(TarnFormatUtil::str_to_double("-0.000e-5", nullptr)));
  EXPECT_TRUE(std::signbit(TarnFormatUtil::str_to_double("-1e-999", nullptr)));
  EXPECT_FALSE(std::signbit(TarnFormatUtil::str_to_double("+0", nullptr)));
  EXPECT_FALSE(std::signbit(TarnFormatUtil::str_to_double("1e-999", nullptr)));
  const double negativeNaN = TarnFormatUtil::str_to_double("-NaN", nullptr);
  EXPECT_TRUE(std::isnan(negativeNaN));
  EXPECT_TRUE(std::signbit(negativeNaN));
  EXPECT_FALSE(std::signbit(TarnFormatUtil::str_to_double("nan", nullptr)));
}

TEST(TarnFormatUtil, SpecialTextsMatchWhatTheLibraryPrints) {
  EXPECT_STREQ(TarnFormatUtil::NAN_STRING, "NaN");
  EXPECT_STREQ(TarnFormatUtil::INF_STRING, "Inf");
}

TEST(TarnFormatUtil, IntToStrPadsButNeverCuts) {
  struct Case { int value; char fill; int width; bool fillLeft; const char* text; };
  const Case cases[] = {
      {42, ' ', 5, true, "   42"},   {42, ' ', 5, false, "42   "},  {-42, ' ', 5, true, "  -42"},
      {-42, '0', 5, true, "-0042"},  {-42, '0', 5, false, "-4200"}, {42, '0', 5, true, "00042"},
      {42, '*', 4, false, "42**"},   {12345, ' ', 2, true, "12345"}, {12345, ' ', 5, true, "12345"},
      {0, ' ', 0, true, "0"},        {7, ' ', -3, true, "7"},       {INT_MAX, ' ', 0, true, "2147483647"},
      {INT_MIN, ' ', 0, true, "-2147483648"}, {INT_MIN, '0', 13, true, "-002147483648"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.value) + " fill '" + c.fill + "' width " +
                 std::to_string(c.width) + (c.fillLeft ? " left" : " right"));
    EXPECT_EQ(TarnFormatUtil::int_to_str(c.value, c.fill, c.width, c.fillLeft), c.text);
  }
}

} // namespace
