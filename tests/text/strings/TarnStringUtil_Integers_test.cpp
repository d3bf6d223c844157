//===- TarnStringUtil_Integers_test.cpp - Integer text conversions ----------===//
//
// std::to_chars / std::from_chars and sscanf are the oracles wherever the
// library's lenient rules agree with them; wrap-around, lone signs and the
// "-0" text of the smallest values are checked by hand.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cinttypes>
#include <climits>
#include <cstdio>
#include <limits>
#include <initializer_list>
#include <random>
#include <string>
#include <tuple>

namespace {

template <class T>
std::string Oracle(T v) {
  char buf[32];
  return std::string(buf, std::to_chars(buf, buf + sizeof buf, v).ptr);
}

} // namespace

TEST(TarnStringUtilIntegers, SignedTextMatchesToChars) {
  const int ints[] = {0, -10, 123456, INT_MAX, INT_MIN + 1};
  for (int v : ints) {
    SCOPED_TRACE(v);
    EXPECT_EQ(TarnStringUtil::String(v), Oracle(v));
    std::string s = "x=";
    EXPECT_EQ(TarnStringUtil::Append(s, v), "x=" + Oracle(v));
  }
}

TEST(TarnStringUtilIntegers, SmallestSignedValuesPrintAsMinusZero) {
  EXPECT_EQ(TarnStringUtil::String(INT_MIN), "-0");
  EXPECT_EQ(TarnStringUtil::String(INT64_MIN), "-0");
  std::string s = "v";
  EXPECT_EQ(TarnStringUtil::Append(s, INT_MIN), "v-0");
  EXPECT_EQ(TarnStringUtil::String(std::list<int>{INT_MIN, 5}), "-0 5 ");
}

TEST(TarnStringUtilIntegers, UnsignedText) {
  EXPECT_EQ(TarnStringUtil::String(0u), "0");
  EXPECT_EQ(TarnStringUtil::String(UINT_MAX), "4294967295");
  EXPECT_EQ(TarnStringUtil::String(UINT64_MAX), "18446744073709551615");
  std::string s = "old";
  EXPECT_EQ(TarnStringUtil::AssignSize(s, UINT64_MAX), "18446744073709551615");
  EXPECT_EQ(TarnStringUtil::AssignSize(s, 0), "0");
}

TEST(TarnStringUtilIntegers, ListsEndWithASpace) {
  EXPECT_EQ(TarnStringUtil::String(std::list<int>{1, -2}), "1 -2 ");
  EXPECT_EQ(TarnStringUtil::String(std::list<int>{}), "");
  const int a[] = {7, 0, -30};
  EXPECT_EQ(TarnStringUtil::String(a, 3), "7 0 -30 ");
  EXPECT_EQ(TarnStringUtil::String(a, 0), "");
  EXPECT_EQ(TarnStringUtil::String(static_cast<const int*>(nullptr), 3), "");
}

// Both std::string and C string forms; a lone sign counts as read, high
// bytes and 0x1C are no digits or blanks, and values wrap around.
template <class T>
void ExpectLenientReads(ZelStatusCode (*fromString)(const std::string&, T&),
                        ZelStatusCode (*fromChars)(const char*, T&),
                        std::initializer_list<std::tuple<const char*, T, ZelStatusCode>> cases) {
  for (const auto& [in, value, status] : cases) {
    SCOPED_TRACE(testing::PrintToString(std::string(in)));
    T out = 99;
    EXPECT_EQ(fromString(in, out), status);
    EXPECT_EQ(out, value);
    out = 99;
    EXPECT_EQ(fromChars(in, out), status);
    EXPECT_EQ(out, value);
  }
  T out = 99;
  EXPECT_EQ(fromChars(nullptr, out), ERR_NOT_FOUND);
  EXPECT_EQ(out, 0);
}

TEST(TarnStringUtilIntegers, ToIntAndToInt64LenientRules) {
  using TSU = TarnStringUtil;
  ExpectLenientReads<int>(TSU::ToInt, TSU::ToInt, {
      {"  -42xyz", -42, STATUS_OK}, {"+", 0, STATUS_OK}, {" -x", 0, STATUS_OK},
      {"+-3", 0, STATUS_OK}, {"abc", 0, ERR_NOT_FOUND}, {"", 0, ERR_NOT_FOUND},
      {" \t\n\v\f\r", 0, ERR_NOT_FOUND}, {"\t\n\v\f\r 7", 7, STATUS_OK}, {"007", 7, STATUS_OK},
      {"0x1F", 0, STATUS_OK}, {"\xB2", 0, ERR_NOT_FOUND}, {"4\xD9\xA3", 4, STATUS_OK},
      {"\x1C" "5", 0, ERR_NOT_FOUND}, {"2147483648", INT_MIN, STATUS_OK},
      {"4294967295", -1, STATUS_OK}, {"4294967296", 0, STATUS_OK}, {"-4294967297", -1, STATUS_OK}});
  ExpectLenientReads<std::int64_t>(TSU::ToInt64, TSU::ToInt64, {
      {"  -42xyz", -42, STATUS_OK}, {"+", 0, STATUS_OK}, {"", 0, ERR_NOT_FOUND},
      {"9223372036854775808", INT64_MIN, STATUS_OK}, {"18446744073709551615", -1, STATUS_OK},
      {"18446744073709551616", 0, STATUS_OK}});
}

TEST(TarnStringUtilIntegers, RandomValuesAgreeWithFromChars) {
  std::mt19937_64 rng(7);
  for (int i = 0; i < 20000; ++i) {
    const std::int64_t v64 = static_cast<std::int64_t>(rng()) >> (rng() % 64);
    const int v32 = static_cast<int>(v64);
    const std::string t64 = Oracle(v64), t32 = Oracle(v32);
    std::int64_t r64 = 0;
    int r32 = 0, parsed32 = 0;
    std::from_chars(t32.data(), t32.data() + t32.size(), parsed32);
    ASSERT_EQ(TarnStringUtil::ToInt64(t64, r64), STATUS_OK);
    ASSERT_EQ(r64, v64) << t64;
    ASSERT_EQ(TarnStringUtil::ToInt(t32, r32), STATUS_OK);
    ASSERT_EQ(r32, parsed32) << t32;
    if (v64 != INT64_MIN) {
      ASSERT_EQ(TarnStringUtil::String(v64), t64);
    }
  }
}

TEST(TarnStringUtilIntegers, ToSizeTReadsLikeScanf) {
  const char* const agreeing[] = {"42", "  42 ", "+5", "-1", "-0", "12abc",
                                  "\t\n7", "18446744073709551615", "0009"};
  for (const char* in : agreeing) {
    SCOPED_TRACE(in);
    std::uint64_t expected = 0, out = 77;
    ASSERT_EQ(std::sscanf(in, "%" SCNu64, &expected), 1);
    EXPECT_EQ(TarnStringUtil::ToSizeT(in, out), STATUS_OK);
    EXPECT_EQ(out, expected);
  }
  const char* const failing[] = {"", "   ", "abc", "-", "+", "- 1", "x1"};
  for (const char* in : failing) {
    SCOPED_TRACE(in);
    std::uint64_t out = 77;
    EXPECT_EQ(TarnStringUtil::ToSizeT(in, out), ERR_NOT_FOUND);
    EXPECT_EQ(out, 77u); // left as it was
  }
  std::uint64_t out = 0;
  EXPECT_EQ(TarnStringUtil::ToSizeT("18446744073709551616", out), STATUS_OK);
  EXPECT_EQ(out, UINT64_MAX);
  EXPECT_EQ(TarnStringUtil::ToSizeT("99999999999999999999999", out), STATUS_OK);
  EXPECT_EQ(out, UINT64_MAX);
}
