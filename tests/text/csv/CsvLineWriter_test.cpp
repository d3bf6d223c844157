//===- CsvLineWriter_test.cpp - One CSV line in a fixed buffer --------------===//
#include "TarnUtilities/text/CsvLineWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

// The message of the std::runtime_error that `append` throws, or "" if none.
std::string FailureOf(const std::function<void()>& append) {
  try {
    append();
  } catch (const std::runtime_error& e) {
    return e.what();
  }
  return "";
}

// strtod of a whole token; a token with unparsed characters fails the test.
double ParseDouble(const std::string& token) {
  char* end = nullptr;
  const double x = std::strtod(token.c_str(), &end);
  EXPECT_TRUE(!token.empty() && *end == '\0') << "not a number: '" << token << "'";
  return x;
}

// A finite double with random bits: every exponent and mantissa shape.
double RandomFiniteDouble(std::mt19937_64& rng) {
  for (;;) {
    const std::uint64_t bits = rng();
    double x;
    std::memcpy(&x, &bits, sizeof x);
    if (std::isfinite(x))
      return x;
  }
}

// The append functions by kind; p is the string length, the integer, or the
// digits or precision argument.
enum Kind { kString, kChar, kInt, kFree, kDigits, kRounded, kScientific };
void Append(CsvLineWriter& l, Kind kind, double x, int p) {
  switch (kind) {
  case kString: l.AppendValue(std::string(static_cast<std::size_t>(p), 'q')); break;
  case kChar: l.AppendValue('c'); break;
  case kInt: l.AppendValue(p); break;
  case kFree: l.AppendValue(x); break;
  case kDigits: l.AppendValue(x, p); break;
  case kRounded: l.AppendRoundedValue(x, p); break;
  case kScientific: l.AppendValueFixedFmt(x, p); break;
  }
}

} // namespace

TEST(CsvLineWriter, SeparatesValuesOfEveryKind) {
  CsvLineWriter line(200, ";");
  line.AppendValue("a");
  line.AppendValue(1);
  line.AppendValue(2);
  EXPECT_STREQ(line.GetLine(), "a;1;2");
  EXPECT_EQ(line.GetNumTokens(), 3u);

  line.AppendValue(std::string("str"));
  line.AppendValue('c');
  line.AppendValue(-2147483647 - 1);
  line.AppendValue(0.1);
  line.AppendValue(-0.0);
  EXPECT_STREQ(line.GetLine(), "a;1;2;str;c;-2147483648;0.1;-0.0");
  EXPECT_EQ(line.GetNumTokens(), 8u);
  EXPECT_EQ(line.GetCurrentLen(), std::strlen(line.GetLine()));
}

TEST(CsvLineWriter, EmptyFirstTokensGetNoSeparatorAfterThem) {
  CsvLineWriter line(50, ",");
  line.AppendValue("");
  line.AppendValue(7);
  EXPECT_STREQ(line.GetLine(), "7");
  EXPECT_EQ(line.GetNumTokens(), 2u);

  line.Clear();
  line.AppendValue(std::string());
  line.AppendValue(static_cast<const char*>(nullptr));
  line.AppendValue("x");
  line.AppendValue("");
  line.AppendValue("y");
  EXPECT_STREQ(line.GetLine(), "x,,y");
  EXPECT_EQ(line.GetNumTokens(), 5u);
}

TEST(CsvLineWriter, ZeroCharactersDoNotEndTheLineEarly) {
  CsvLineWriter line(50, ",");
  line.AppendValue('\0');
  line.AppendValue(std::string("ab\0cd", 5));
  line.SetSeparator('\0');
  line.AppendValue('z');
  EXPECT_STREQ(line.GetLine(), "abz");
  EXPECT_EQ(line.GetCurrentLen(), 3u);
  EXPECT_EQ(line.GetNumTokens(), 3u);
}

TEST(CsvLineWriter, ExponentSwitchesReachTheFormatter) {
  CsvLineWriter line(100, ",");
  line.SetPosExpFmtSwitch(8);
  line.SetNegExpFmtSwitch(6);
  line.AppendValue(100000.0);
  line.AppendValue(0.0000015);
  EXPECT_STREQ(line.GetLine(), "100000.0,0.0000015");
}

// Integers need 11 free characters, doubles 25, whatever their own length.
TEST(CsvLineWriter, NumbersNeedAFixedMinimumRoom) {
  {
    CsvLineWriter line(10, ",");
    EXPECT_EQ(FailureOf([&] { line.AppendValue(1); }),
              "Out of space in the buffer while printing an integer.");
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_EQ(line.GetNumTokens(), 0u);
  }
  {
    CsvLineWriter line(11, ",");
    line.AppendValue(-2147483647 - 1);
    EXPECT_STREQ(line.GetLine(), "-2147483648");
  }
  {
    CsvLineWriter line(24, ",");
    EXPECT_EQ(FailureOf([&] { line.AppendValue(1.0); }),
              "Out of space in the buffer while printing a double in free format.");
  }
  {
    CsvLineWriter line(25, ",");
    line.AppendValue(-2.2250738585072014e-308);
    EXPECT_STREQ(line.GetLine(), "-2.2250738585072014e-308");
  }
  // Filling up a line: each integer is accepted exactly while 11 characters
  // remain after the separator.
  for (std::size_t capacity = 0; capacity < 60; ++capacity) {
    SCOPED_TRACE(capacity);
    CsvLineWriter line(capacity, ", ");
    for (;;) {
      const std::size_t before = line.GetCurrentLen();
      const std::size_t roomAfterSeparator =
          capacity - std::min(capacity, before + (before ? 2 : 0));
      const std::string failure = FailureOf([&] { line.AppendValue(5); });
      if (roomAfterSeparator >= 11) {
        ASSERT_EQ(failure, "");
      } else {
        ASSERT_EQ(failure, "Out of space in the buffer while printing an integer.");
        break;
      }
    }
    EXPECT_LE(line.GetCurrentLen(), capacity);
    EXPECT_EQ(std::strlen(line.GetLine()), line.GetCurrentLen());
  }
}

TEST(CsvLineWriter, EveryAppendHasItsOwnOutOfSpaceMessage) {
  const std::pair<Kind, const char*> cases[] = {
      {kString, "Out of space in the buffer while adding a string."},
      {kChar, "Out of space in the buffer while adding a character."},
      {kInt, "Out of space in the buffer while printing an integer."},
      {kFree, "Out of space in the buffer while printing a double in free format."},
      {kDigits, "Out of space in the buffer while printing a double in fixed-format."},
      {kRounded, "Out of space in the buffer while printing a rounded double in fixed-format."},
      {kScientific, "Out of space in the buffer while printing a double in scientific-format."},
  };
  for (const auto& [kind, message] : cases) {
    SCOPED_TRACE(kind);
    // Full after "xx": the separator still fits, the value does not.
    CsvLineWriter line(3, "|");
    line.AppendValue("xx");
    EXPECT_EQ(FailureOf([&] { Append(line, kind, 1.0, 2); }), message);
    EXPECT_STREQ(line.GetLine(), "xx|");
    EXPECT_EQ(line.GetNumTokens(), 1u);
  }
}

TEST(CsvLineWriter, CutStringsKeepWhatFitted) {
  CsvLineWriter line(5, ",");
  line.AppendValue("abc");
  EXPECT_EQ(FailureOf([&] { line.AppendValue("defg"); }),
            "Out of space in the buffer while adding a string.");
  EXPECT_STREQ(line.GetLine(), "abc,d");
  EXPECT_EQ(line.GetNumTokens(), 1u);
  // Nothing fits any more, not even a separator.
  EXPECT_EQ(FailureOf([&] { line.AppendValue('x'); }),
            "Out of space in the buffer while adding a character.");
  EXPECT_STREQ(line.GetLine(), "abc,d");

  // A separator that does not fit whole is cut like a string.
  CsvLineWriter tight(4, ";;");
  tight.AppendValue("abc");
  EXPECT_EQ(FailureOf([&] { tight.AppendValue(1); }),
            "Out of space in the buffer while printing an integer.");
  EXPECT_STREQ(tight.GetLine(), "abc;");
}

TEST(CsvLineWriter, NanAndInfAreRefusedWhileTheFlagIsSet) {
  const std::tuple<Kind, const char*> cases[] = {
      {kFree, "free format."}, {kDigits, "fixed format."}, {kRounded, "fixed format."},
      {kScientific, "scientific-format."}};
  for (const auto& [kind, format] : cases) {
    SCOPED_TRACE(kind);
    CsvLineWriter line(100, ",");
    line.AppendValue(4);
    EXPECT_EQ(FailureOf([&] { Append(line, kind, kNaN, 3); }),
              std::string("Attempted to print a NaN-value in ") + format);
    EXPECT_STREQ(line.GetLine(), "4,");
    EXPECT_EQ(FailureOf([&] { Append(line, kind, -kInf, 3); }),
              std::string("Attempted to print an Inf-value in ") + format);
    EXPECT_STREQ(line.GetLine(), "4,,");
    EXPECT_EQ(line.GetNumTokens(), 1u);

    line.Clear();
    line.SetInfNanFlag(false);
    EXPECT_FALSE(line.GetInfNanFlag());
    line.AppendValue(4);
    for (double x : {kNaN, kInf, -kInf})
      Append(line, kind, x, 3);
    EXPECT_STREQ(line.GetLine(), "4,NaN,Inf,Inf");
    EXPECT_EQ(line.GetNumTokens(), 1u); // deliberately not counted
  }
}

TEST(CsvLineWriter, FormatsGetTheirLayoutArguments) {
  const std::tuple<Kind, double, int, const char*> cases[] = {
      // Rounded: fixed notation, exact binary value, trailing zeros trimmed.
      {kRounded, 2.675, 2, "2.67"}, {kRounded, -0.004, 2, "-0"},
      // Scientific, digits kept.
      {kScientific, 12345.0, 2, "1.23e+4"}, {kScientific, 1.5, 3, "1.500e+0"},
      // Limited length: the field is the digits argument, no padding.
      {kDigits, 3.14159265, 6, "3.1416"}, {kDigits, 123456789.0, 6, "1.2e+8"},
  };
  for (const auto& [kind, x, p, text] : cases) {
    SCOPED_TRACE(text);
    CsvLineWriter line(100, ",");
    Append(line, kind, x, p);
    EXPECT_STREQ(line.GetLine(), text);
    EXPECT_EQ(line.GetNumTokens(), 1u);
  }
}

TEST(CsvLineWriter, LongNumberTextsNeverPassTheEndOfTheBuffer) {
  // 3e-30 rounded to 100 places has 102 characters (its binary value has
  // more than 100 decimals): the 25 characters of the room check are not
  // enough, and the append must fail without writing past the buffer.
  {
    CsvLineWriter small(60, ",");
    EXPECT_EQ(FailureOf([&] { small.AppendRoundedValue(3e-30, 100); }),
              "Out of space in the buffer while printing a rounded double in fixed-format.");
    EXPECT_EQ(FailureOf([&] { small.AppendValueFixedFmt(1.0 / 3.0, 200); }),
              "Out of space in the buffer while printing a double in scientific-format.");
    small.SetPosExpFmtSwitch(400);
    EXPECT_EQ(FailureOf([&] { small.AppendValue(1e300); }),
              "Out of space in the buffer while printing a double in free format.");
    EXPECT_STREQ(small.GetLine(), "");
    EXPECT_EQ(small.GetNumTokens(), 0u);
    // A wide field shows the shortest digits and no more.
    EXPECT_EQ(FailureOf([&] { small.AppendValue(1.0 / 3.0, 100); }), "");
    EXPECT_STREQ(small.GetLine(), "0.3333333333333333");
  }
  CsvLineWriter large(2000, ",");
  large.AppendRoundedValue(3e-30, 100);
  large.AppendRoundedValue(1e300, 4);
  large.AppendValueFixedFmt(-1.0 / 3.0, 200);
  large.SetPosExpFmtSwitch(400);
  large.AppendValue(1e300);
  ASSERT_EQ(large.GetNumTokens(), 4u);
  EXPECT_EQ(large.GetLineTokens(0, 0).size(), 102u);
  EXPECT_NEAR(ParseDouble(large.GetLineTokens(0, 0)), 3e-30, 1e-100);
  EXPECT_EQ(ParseDouble(large.GetLineTokens(1, 1)), 1e300);
  EXPECT_EQ(ParseDouble(large.GetLineTokens(2, 2)), -1.0 / 3.0);
  EXPECT_EQ(large.GetLineTokens(3, 3), "1" + std::string(300, '0') + ".0");
  // Random appends into random small lines: the sanitizer build checks the
  // bounds, the test checks the line stays a proper C string.
  std::mt19937_64 rng(5);
  for (int round = 0; round < 400; ++round) {
    CsvLineWriter line(rng() % 70, (rng() & 1) ? "," : ", ");
    for (int k = 0; k < 12; ++k) {
      const double x = RandomFiniteDouble(rng);
      const int p = static_cast<int>(rng() % 30);
      try {
        line.SetPosExpFmtSwitch(static_cast<int>(rng() % 40));
        line.SetNegExpFmtSwitch(static_cast<int>(rng() % 40));
        Append(line, static_cast<Kind>(rng() % 7), x, p);
      } catch (const std::runtime_error&) {
      }
      ASSERT_EQ(std::strlen(line.GetLine()), line.GetCurrentLen());
    }
  }
}

TEST(CsvLineWriter, GetLineTokensCutsBySeparator) {
  struct Case {
    const char* line;
    const char* sep;
    int first, last;
    const char* expected;
  };
  const Case cases[] = {
      {"a;b;c;d", ";", 0, 0, "a"},  {"a;b;c;d", ";", 1, 2, "b;c"}, {"a;b;c;d", ";", 2, 9, "c;d"},
      {"a;b;c;d", ";", 4, 5, ""},   {"a;b;c;d", ";", 2, 1, ""},    {"a;b;c;d", ";", -3, 0, "a"},
      {"a;;c", ";", 1, 2, ";c"},    {"1, 2, 3", ", ", 1, 2147483647, "2, 3"},
      {"", ";", 0, 0, ""},          {"abc", "", 0, 0, "abc"},      {"a,b;c", ";", 0, 0, "a,b"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.line) + " [" + c.sep + "] " + std::to_string(c.first) + ".." +
                 std::to_string(c.last));
    CsvLineWriter line(100, c.sep);
    line.AppendValue(c.line);
    EXPECT_EQ(line.GetLineTokens(c.first, c.last), c.expected);
  }
}

TEST(CsvLineWriter, SetValueAndSetListStartOver) {
  CsvLineWriter line(100, ",");
  line.AppendValue("old");
  line.SetValue(5);
  EXPECT_STREQ(line.GetLine(), "5");
  line.SetValue("s");
  EXPECT_STREQ(line.GetLine(), "s");
  line.SetValue(2.5);
  EXPECT_STREQ(line.GetLine(), "2.5");
  line.SetValue(0.25, 8);
  EXPECT_EQ(ParseDouble(line.GetLine()), 0.25);
  EXPECT_EQ(line.GetNumTokens(), 1u);

  line.SetList(std::vector<int>{1, -2, 3});
  EXPECT_STREQ(line.GetLine(), "1,-2,3");
  line.SetList(std::vector<double>{0.5, 1e100});
  EXPECT_STREQ(line.GetLine(), "0.5,1.0e+100");
  line.SetList(std::vector<std::string>{"a", "", "c"});
  EXPECT_STREQ(line.GetLine(), "a,,c");
  EXPECT_EQ(line.GetNumTokens(), 3u);
  line.AppendList(std::vector<int>{4});
  line.AppendList(std::vector<double>{});
  EXPECT_STREQ(line.GetLine(), "a,,c,4");
}

