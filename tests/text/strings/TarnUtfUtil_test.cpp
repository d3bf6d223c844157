//===- TarnUtfUtil_test.cpp - UTF-8 byte classes ----------------------------===//
#include "TarnUtilities/text/TarnUtfUtil.h"

#include <gtest/gtest.h>

#include <string>

TEST(TarnUtfUtil, CodepointLengthOfEveryByte) {
  for (int b = 0; b < 256; ++b) {
    SCOPED_TRACE(b);
    int expected = 0;
    if (b <= 0x7F)
      expected = 1;
    else if (b >= 0xC0 && b <= 0xDF)
      expected = 2;
    else if (b >= 0xE0 && b <= 0xEF)
      expected = 3;
    else if (b >= 0xF0 && b <= 0xF7)
      expected = 4;
    EXPECT_EQ(TarnUtfUtil::GetCodepointLength(static_cast<unsigned char>(b)), expected);
    EXPECT_EQ(TarnUtfUtil::is_utf8_trail(static_cast<unsigned char>(b)), b >= 0x80 && b <= 0xBF);
  }
}

TEST(TarnUtfUtil, ValidityChecksStructureOnly) {
  struct Case { std::string text; bool valid; };
  const Case cases[] = {
      {"", true}, {"\xC3\xA9", true}, {"\xF0\x9F\x98\x80", true}, {std::string("\0\xC3\xA9", 3), true},
      // Structurally fine although a strict decoder rejects them: overlong,
      // an encoded surrogate, above U+10FFFF.
      {"\xC0\x80", true}, {"\xED\xA0\x80", true}, {"\xF4\x90\x80\x80", true},
      // Bad continuation or cut short; bytes that cannot lead a sequence.
      {"\xC3\x41", false}, {"\xE2\x82", false}, {"\xE2\x82\xAC\xC3", false},
      {"\x80", false}, {"\xC3\xA9\xA9", false}, {"\xF8\x80\x80\x80\x80", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(TarnUtfUtil::is_valid_utf8(c.text), c.valid);
  }
}

TEST(TarnUtfUtil, EveryByteAloneOrAsLeadTerminates) {
  // Whatever byte stands where a lead is expected, the walk ends.
  for (int b = 0; b < 256; ++b) {
    SCOPED_TRACE(b);
    const std::string s = "a" + std::string(1, static_cast<char>(b)) + "\x80\x80\x80z";
    const int len = TarnUtfUtil::GetCodepointLength(static_cast<unsigned char>(b));
    // Valid only when b leads a sequence the three continuation bytes
    // complete exactly, with 'z' then standing alone.
    EXPECT_EQ(TarnUtfUtil::is_valid_utf8(s), len == 4);
  }
}
