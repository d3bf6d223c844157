//===- fuzz/utf_fuzzer.cpp - UTF-8 and UTF-16 conversions -------------------===//
//
// One input is read twice. As bytes (up to the first zero): utf8_to_wide
// must give what a strict decoder written here gives (the well-formed
// sequences of the Unicode standard, table 3-7) and encode back to the same
// bytes, or, when the strict decoder rejects the text, the Latin-1 reading
// of every byte. is_valid_utf8 must agree with a structural check (lead
// byte, length, continuation bytes). As UTF-16 units (little-endian pairs,
// up to the first zero unit): wide_to_utf8 must give the bytes of an
// encoder written here (a lone surrogate becomes U+FFFD), which decode back
// to the same units with the lone surrogates replaced.
//
//===----------------------------------------------------------------------===//
#include "FuzzSupport.h"

#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/TarnUtfUtil.h"

#include <cstdint>
#include <optional>
#include <string>

using tarn_fuzz::Check;
using tarn_fuzz::Escaped;

namespace {

constexpr char16_t kReplacement = 0xFFFD;

// The strict decoding of s, or nothing when s is not well-formed UTF-8.
std::optional<std::u16string> StrictDecode(const std::string& s) {
  std::u16string out;
  for (std::size_t i = 0; i < s.size();) {
    const unsigned char lead = s[i];
    // Sequence length and the range of the second byte, per lead byte.
    int length = 0;
    unsigned char low = 0x80, high = 0xBF;
    if (lead < 0x80) length = 1;
    else if (lead >= 0xC2 && lead <= 0xDF) length = 2;
    else if (lead == 0xE0) length = 3, low = 0xA0;
    else if (lead == 0xED) length = 3, high = 0x9F;
    else if (lead >= 0xE1 && lead <= 0xEF) length = 3;
    else if (lead == 0xF0) length = 4, low = 0x90;
    else if (lead == 0xF4) length = 4, high = 0x8F;
    else if (lead >= 0xF1 && lead <= 0xF3) length = 4;
    else return std::nullopt;
    if (s.size() - i < static_cast<std::size_t>(length))
      return std::nullopt;
    char32_t value = length == 1 ? lead : lead & (0x7F >> length);
    for (int k = 1; k < length; ++k) {
      const unsigned char c = s[i + k];
      const unsigned char min = k == 1 ? low : 0x80, max = k == 1 ? high : 0xBF;
      if (c < min || c > max)
        return std::nullopt;
      value = (value << 6) | (c & 0x3F);
    }
    if (value >= 0x10000) {
      out.push_back(static_cast<char16_t>(0xD800 + ((value - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((value - 0x10000) & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(value));
    }
    i += length;
  }
  return out;
}

// Lead byte, length and continuation bytes only.
bool StructurallyValid(const std::string& s) {
  for (std::size_t i = 0; i < s.size();) {
    const unsigned char lead = s[i];
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xC0 && lead < 0xE0 ? 2
                             : lead >= 0xE0 && lead < 0xF0 ? 3 : lead >= 0xF0 && lead < 0xF8 ? 4 : 0;
    if (length == 0 || s.size() - i < length)
      return false;
    for (std::size_t k = 1; k < length; ++k)
      if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80)
        return false;
    i += length;
  }
  return true;
}

bool IsHigh(char16_t u) { return u >= 0xD800 && u <= 0xDBFF; }
bool IsLow(char16_t u) { return u >= 0xDC00 && u <= 0xDFFF; }

// The UTF-8 bytes of units, each lone surrogate as U+FFFD; `decoded` gets
// the units that those bytes stand for.
std::string Encode(const std::u16string& units, std::u16string& decoded) {
  std::string out;
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t value = units[i];
    if (IsHigh(units[i]) && i + 1 < units.size() && IsLow(units[i + 1])) {
      value = 0x10000 + ((value - 0xD800) << 10) + (units[i + 1] - 0xDC00);
      decoded.push_back(units[i]);
      decoded.push_back(units[++i]);
    } else {
      if (IsHigh(units[i]) || IsLow(units[i]))
        value = kReplacement;
      decoded.push_back(static_cast<char16_t>(value));
    }
    if (value < 0x80) {
      out.push_back(static_cast<char>(value));
    } else if (value < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (value >> 6)));
      out.push_back(static_cast<char>(0x80 | (value & 0x3F)));
    } else if (value < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (value >> 12)));
      out.push_back(static_cast<char>(0x80 | ((value >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (value & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (value >> 18)));
      out.push_back(static_cast<char>(0x80 | ((value >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((value >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (value & 0x3F)));
    }
  }
  return out;
}

std::string Hex(const std::u16string& units) {
  std::string out;
  for (char16_t u : units) {
    char hex[8];
    std::snprintf(hex, sizeof hex, "%04X ", static_cast<unsigned>(u));
    out += hex;
  }
  return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string all(reinterpret_cast<const char*>(data), size);
  Check(TarnUtfUtil::is_valid_utf8(all) == StructurallyValid(all),
        "is_valid_utf8 checks lead bytes, lengths and continuation bytes", Escaped(all));

  // Bytes to units.
  const std::string bytes = all.substr(0, all.find('\0'));
  const std::u16string wide = TarnStringUtil::utf8_to_wide(bytes);
  const std::optional<std::u16string> strict = StrictDecode(bytes);
  if (strict) {
    Check(wide == *strict, "well-formed UTF-8 decodes as the strict decoder does",
          Escaped(bytes) + "\ngot " + Hex(wide) + "\nexpected " + Hex(*strict));
    Check(TarnStringUtil::wide_to_utf8(wide) == bytes, "well-formed UTF-8 encodes back",
          Escaped(bytes));
  } else {
    std::u16string expected;
    for (unsigned char c : bytes)
      expected.push_back(c);
    Check(wide == expected, "text that is not UTF-8 is read as Latin-1",
          Escaped(bytes) + "\ngot " + Hex(wide));
  }

  // Units to bytes.
  std::u16string units;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    const char16_t unit = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
    if (unit == 0)
      break;
    units.push_back(unit);
  }
  std::u16string replaced;
  const std::string encoded = Encode(units, replaced);
  const std::string utf8 = TarnStringUtil::wide_to_utf8(units);
  Check(utf8 == encoded, "UTF-16 encodes as the plain encoder does",
        Hex(units) + "\ngot " + Escaped(utf8) + "\nexpected " + Escaped(encoded));
  Check(TarnStringUtil::utf8_to_wide(utf8) == replaced, "encoded UTF-16 decodes back",
        Hex(units));
  return 0;
}
