//===- TarnStringUtil_Utf_test.cpp - UTF-8 / UTF-16 conversion --------------===//
//
// glibc's iconv serves as the independent oracle for well-formed text; the
// malformed cases are hand-picked tables grouped by kind.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/TarnUtfUtil.h"

#include <gtest/gtest.h>

#include <iconv.h>

#include <cstdint>
#include <random>
#include <string>

namespace {

// Converts with iconv; false when iconv rejects the input.
bool IconvConvert(const char* to, const char* from, const std::string& in, std::string& out) {
  iconv_t cd = iconv_open(to, from);
  if (cd == reinterpret_cast<iconv_t>(-1))
    return false;
  out.assign(in.size() * 4 + 16, '\0');
  char* src = const_cast<char*>(in.data());
  std::size_t srcLeft = in.size();
  char* dst = &out[0];
  std::size_t dstLeft = out.size();
  const std::size_t rc = iconv(cd, &src, &srcLeft, &dst, &dstLeft);
  iconv_close(cd);
  if (rc == static_cast<std::size_t>(-1) || srcLeft != 0)
    return false;
  out.resize(out.size() - dstLeft);
  return true;
}

std::u16string BytesAsUtf16LE(const std::string& bytes) {
  std::u16string out;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    out.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                        (static_cast<unsigned char>(bytes[i + 1]) << 8)));
  return out;
}

std::string Utf16AsBytesLE(const std::u16string& units) {
  std::string out;
  for (char16_t u : units) {
    out.push_back(static_cast<char>(u & 0xFF));
    out.push_back(static_cast<char>(u >> 8));
  }
  return out;
}

std::u16string Latin1(const std::string& bytes) {
  std::u16string out;
  for (char c : bytes)
    out.push_back(static_cast<unsigned char>(c));
  return out;
}

// Every Unicode scalar value except U+0000 (which would end a C string), as
// UTF-16.
std::u16string AllScalarValues() {
  std::u16string s;
  for (char32_t cp = 1; cp <= 0x10FFFF; ++cp) {
    if (cp >= 0xD800 && cp <= 0xDFFF)
      continue;
    if (cp < 0x10000) {
      s.push_back(static_cast<char16_t>(cp));
    } else {
      s.push_back(static_cast<char16_t>(0xD800 + ((cp - 0x10000) >> 10)));
      s.push_back(static_cast<char16_t>(0xDC00 + ((cp - 0x10000) & 0x3FF)));
    }
  }
  return s;
}

} // namespace

TEST(TarnStringUtilUtf, EmptyAndNullGiveEmpty) {
  EXPECT_EQ(TarnStringUtil::utf8_to_wide(static_cast<const char*>(nullptr)), u"");
  EXPECT_EQ(TarnStringUtil::utf8_to_wide(""), u"");
  EXPECT_EQ(TarnStringUtil::wide_to_utf8(static_cast<const char16_t*>(nullptr)), "");
  EXPECT_EQ(TarnStringUtil::wide_to_utf8(u""), "");
}

TEST(TarnStringUtilUtf, EveryScalarValueMatchesIconvAndRoundTrips) {
  const std::u16string all = AllScalarValues();
  const std::string utf8 = TarnStringUtil::wide_to_utf8(all);

  std::string expected;
  ASSERT_TRUE(IconvConvert("UTF-8", "UTF-16LE", Utf16AsBytesLE(all), expected));
  ASSERT_EQ(utf8.size(), expected.size());
  EXPECT_TRUE(utf8 == expected) << "UTF-8 encoding differs from iconv";

  const std::u16string back = TarnStringUtil::utf8_to_wide(utf8);
  ASSERT_EQ(back.size(), all.size());
  EXPECT_TRUE(back == all) << "decoding does not give back every scalar value";
  EXPECT_TRUE(TarnUtfUtil::is_valid_utf8(utf8));
}

TEST(TarnStringUtilUtf, RandomBytesAgreeWithIconv) {
  // Byte strings drawn mostly from lead and continuation bytes: iconv either
  // decodes them the same way, or rejects them and the result is Latin-1.
  const unsigned char alphabet[] = {0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0,
                                    0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xED, 0xEE, 0xEF, 0xF0,
                                    0xF1, 0xF3, 0xF4, 0xF5, 0xF8, 0xFF};
  std::mt19937 rng(12345);
  std::uniform_int_distribution<std::size_t> pick(0, sizeof alphabet - 1);
  std::uniform_int_distribution<int> length(1, 6);
  int decoded = 0;
  for (int iter = 0; iter < 20000; ++iter) {
    std::string s;
    for (int n = length(rng); n > 0; --n)
      s.push_back(static_cast<char>(alphabet[pick(rng)]));
    std::string utf16;
    const std::u16string expected =
        IconvConvert("UTF-16LE", "UTF-8", s, utf16) ? BytesAsUtf16LE(utf16) : Latin1(s);
    if (expected != Latin1(s))
      ++decoded;
    ASSERT_EQ(TarnStringUtil::utf8_to_wide(s), expected) << testing::PrintToString(s);
  }
  EXPECT_GT(decoded, 100); // the sample really exercised the strict path
}

TEST(TarnStringUtilUtf, LoneSurrogatesBecomeReplacementCharacter) {
  const std::string fffd = "\xEF\xBF\xBD";
  struct Case { std::u16string wide; std::string utf8; };
  const Case cases[] = {
      {u"\xD800", fffd},
      {std::u16string(u"a") + char16_t(0xD83D), "a" + fffd},
      {std::u16string{char16_t(0xD83D), u'x'}, fffd + "x"},
      {std::u16string{char16_t(0xDE00), char16_t(0xD83D)}, fffd + fffd},
      {std::u16string{char16_t(0xD83D), char16_t(0xD83D), char16_t(0xDE00)},
       fffd + "\xF0\x9F\x98\x80"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.utf8));
    EXPECT_EQ(TarnStringUtil::wide_to_utf8(c.wide), c.utf8);
  }
}

TEST(TarnStringUtilUtf, ConversionStopsAtNul) {
  const std::string narrow("ab\0cd", 5);
  EXPECT_EQ(TarnStringUtil::utf8_to_wide(narrow), u"ab");
  const std::u16string wide(u"ab\0cd", 5);
  EXPECT_EQ(TarnStringUtil::wide_to_utf8(wide), "ab");
}
