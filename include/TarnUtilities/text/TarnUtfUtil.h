//===- TarnUtilities/text/TarnUtfUtil.h - UTF-8 byte classes ---*- C++ -*-===//
//
// Classification of UTF-8 bytes and a structural validity check. The check
// looks at sequence lengths and continuation bytes only; it does not reject
// overlong forms, encoded surrogates or values above U+10FFFF. For a strict
// decoder see TarnStringUtil::utf8_to_wide.
//
// Example:
//   TarnUtfUtil::GetCodepointLength(0xE2)   // 3
//   TarnUtfUtil::is_valid_utf8("\xC3\xA9")  // true
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNUTFUTIL_H
#define TARNUTILITIES_TEXT_TARNUTFUTIL_H

#include "TarnUtilities/Export.h"

#include <string>

class TARN_API TarnUtfUtil {
public:
  TarnUtfUtil() = delete;

  /// Length of the sequence that lead byte c starts:
  ///   0x00-0x7F => 1,  110xxxxx => 2,  1110xxxx => 3,  11110xxx => 4,
  ///   continuation bytes 0x80-0xBF and 0xF8-0xFF => 0.
  static int GetCodepointLength(unsigned char c);

  /// True for continuation bytes 0x80 to 0xBF.
  static bool is_utf8_trail(unsigned char c) { return c >= 0x80 && c <= 0xBF; }

  /// Walks s sequence by sequence: false at the first sequence that is cut
  /// short by the end of s, has a byte after its lead that is not 10xxxxxx,
  /// or starts with a byte that cannot lead (a stray continuation byte or
  /// 0xF8-0xFF). The empty string is valid.
  ///   "\xC3\xA9" => true,  "\xC3\x41" => false,  "\xE2\x82" => false,
  ///   "\x80" => false
  static bool is_valid_utf8(const std::string& s);
};

#endif // TARNUTILITIES_TEXT_TARNUTFUTIL_H
