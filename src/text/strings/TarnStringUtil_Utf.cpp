//===- TarnStringUtil_Utf.cpp - UTF-8 / UTF-16 conversion -------------------===//
//
// The two converters between UTF-8 narrow strings and UTF-16 wide strings.
// Decoding is strict (the well-formed byte sequences of the Unicode
// standard, table 3-7); text that fails it is read as Latin-1, so that a
// name in a legacy 8-bit encoding still converts without loss. Encoding
// replaces lone surrogates by U+FFFD.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include <cstring>

namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool InRange(unsigned char c, unsigned char lo, unsigned char hi) { return c >= lo && c <= hi; }

// Computes the UTF-16 form of the n bytes at p as strict UTF-8 into out.
// Returns false at the first ill-formed sequence (out is then incomplete).
bool DecodeStrict(const unsigned char* p, std::size_t n, std::u16string& out) {
  std::size_t i = 0;
  while (i < n) {
    const unsigned char c = p[i];
    if (c < 0x80) {
      out.push_back(c);
      ++i;
      continue;
    }
    // The accepted range of the second byte depends on the lead: E0 and F0
    // exclude overlong forms, ED excludes surrogates, F4 caps at U+10FFFF.
    std::size_t len;
    unsigned char lo = 0x80, hi = 0xBF;
    char32_t cp;
    if (InRange(c, 0xC2, 0xDF)) {
      len = 2;
      cp = c & 0x1F;
    } else if (InRange(c, 0xE0, 0xEF)) {
      len = 3;
      cp = c & 0x0F;
      if (c == 0xE0)
        lo = 0xA0;
      else if (c == 0xED)
        hi = 0x9F;
    } else if (InRange(c, 0xF0, 0xF4)) {
      len = 4;
      cp = c & 0x07;
      if (c == 0xF0)
        lo = 0x90;
      else if (c == 0xF4)
        hi = 0x8F;
    } else {
      return false; // continuation byte, C0/C1 (always overlong), F5-FF
    }
    if (n - i < len || !InRange(p[i + 1], lo, hi))
      return false;
    cp = (cp << 6) | (p[i + 1] & 0x3F);
    for (std::size_t k = 2; k < len; ++k) {
      if (!InRange(p[i + k], 0x80, 0xBF))
        return false;
      cp = (cp << 6) | (p[i + k] & 0x3F);
    }
    if (cp < 0x10000) {
      out.push_back(static_cast<char16_t>(cp));
    } else {
      cp -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    }
    i += len;
  }
  return true;
}

// Appends the UTF-8 form of scalar value cp to out.
void EncodeScalar(char32_t cp, std::string& out) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

bool IsHighSurrogate(char16_t u) { return u >= 0xD800 && u <= 0xDBFF; }
bool IsLowSurrogate(char16_t u) { return u >= 0xDC00 && u <= 0xDFFF; }

} // namespace

std::u16string TarnStringUtil::utf8_to_wide(const char* p) {
  std::u16string out;
  if (p == nullptr || *p == '\0')
    return out;
  const std::size_t n = std::strlen(p);
  const auto* bytes = reinterpret_cast<const unsigned char*>(p);
  out.reserve(n); // UTF-16 never needs more units than UTF-8 has bytes
  if (DecodeStrict(bytes, n, out))
    return out;
  // Not UTF-8: every byte is one Latin-1 character.
  out.assign(bytes, bytes + n);
  return out;
}

std::string TarnStringUtil::wide_to_utf8(const char16_t* p) {
  std::string out;
  if (p == nullptr || *p == u'\0')
    return out;
  std::size_t n = 0;
  while (p[n] != u'\0')
    ++n;
  out.reserve(n * 3); // one unit gives at most 3 bytes; a pair gives 4 for 2
  for (std::size_t i = 0; i < n; ++i) {
    const char16_t u = p[i];
    if (IsHighSurrogate(u) && i + 1 < n && IsLowSurrogate(p[i + 1])) {
      const char32_t cp = 0x10000 + ((char32_t(u) - 0xD800) << 10) + (char32_t(p[i + 1]) - 0xDC00);
      EncodeScalar(cp, out);
      ++i;
    } else if (IsHighSurrogate(u) || IsLowSurrogate(u)) {
      EncodeScalar(kReplacement, out);
    } else {
      EncodeScalar(u, out);
    }
  }
  return out;
}
