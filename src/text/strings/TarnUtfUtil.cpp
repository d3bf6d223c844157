//===- TarnUtfUtil.cpp - UTF-8 byte classes ---------------------------------===//
#include "TarnUtilities/text/TarnUtfUtil.h"

int TarnUtfUtil::GetCodepointLength(unsigned char c) {
  if (c < 0x80)
    return 1;
  if ((c & 0xE0) == 0xC0)
    return 2;
  if ((c & 0xF0) == 0xE0)
    return 3;
  if ((c & 0xF8) == 0xF0)
    return 4;
  return 0; // 10xxxxxx continuation bytes and 0xF8-0xFF lead nothing
}

bool TarnUtfUtil::is_valid_utf8(const std::string& s) {
  const std::size_t n = s.size();
  std::size_t i = 0;
  while (i < n) {
    const int len = GetCodepointLength(static_cast<unsigned char>(s[i]));
    // A byte that cannot lead a sequence would stall the walk; it makes the
    // text invalid instead.
    if (len == 0 || n - i < static_cast<std::size_t>(len))
      return false;
    for (int k = 1; k < len; ++k)
      if (!is_utf8_trail(static_cast<unsigned char>(s[i + k])))
        return false;
    i += static_cast<std::size_t>(len);
  }
  return true;
}
