//===- fuzz/str_to_double_fuzzer.cpp - Decimal text to double ---------------===//
//
// One input is a text (up to its first zero byte). str_to_double must give
// the same bits and the same end as glibc's strtod, which rounds correctly,
// wherever the library promises to agree with it (docs/numbers-parsing.md):
//   - blanks are not skipped: a text starting with one is no number
//     (0.0, end at the start), where strtod would skip them;
//   - hexadecimal floats are not read: "0x1p3" is 0 ending before the 'x';
//   - "nan(chars)" ends after "nan".
// Everywhere else bits and end must be equal; a NaN must be a NaN of the
// same sign. The classifications is_double and is_valid_double of the same
// text must agree with the conversion, and ToDouble must read the same
// number after skipping the blanks.
//
//===----------------------------------------------------------------------===//
#include "FuzzSupport.h"

#include "TarnUtilities/text/TarnFormatUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

using tarn_fuzz::Check;
using tarn_fuzz::Escaped;

namespace {

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool StartsNoCase(const char* s, const char* word) {
  for (; *word != '\0'; ++s, ++word)
    if (Lower(*s) != *word)
      return false;
  return true;
}

std::uint64_t Bits(double x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

bool SameDouble(double a, double b) {
  if (std::isnan(a) || std::isnan(b))
    return std::isnan(a) && std::isnan(b) && std::signbit(a) == std::signbit(b);
  return Bits(a) == Bits(b);
}

std::string Report(const std::string& text, double got, double expected, std::ptrdiff_t gotEnd,
                   std::ptrdiff_t expectedEnd) {
  char line[160];
  std::snprintf(line, sizeof line, "\ngot %a (%016llx) end %td\nexpected %a (%016llx) end %td",
                got, static_cast<unsigned long long>(Bits(got)), gotEnd, expected,
                static_cast<unsigned long long>(Bits(expected)), expectedEnd);
  return "text: \"" + Escaped(text) + "\"" + line;
}

// What strtod gives for s within the library's rules, and where it ends.
double Expected(const char* s, const char** end) {
  if (IsBlank(*s)) {
    *end = s;
    return 0.0;
  }
  const char* p = s + ((*s == '+' || *s == '-') ? 1 : 0);
  if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) {
    *end = p + 1;
    return *s == '-' ? -0.0 : 0.0;
  }
  if (StartsNoCase(p, "nan")) {
    *end = p + 3;
    return *s == '-' ? -std::nan("") : std::nan("");
  }
  char* strtodEnd = nullptr;
  const double value = std::strtod(s, &strtodEnd);
  *end = strtodEnd;
  return value;
}

// True when the mantissa digits of a number text are all zeros.
bool ZeroMantissa(const char* s, const char* end) {
  for (; s < end && *s != 'e' && *s != 'E'; ++s)
    if (*s >= '1' && *s <= '9')
      return false;
  return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const char* s = text.c_str();

  const char* end = nullptr;
  const double value = TarnFormatUtil::str_to_double(s, &end);
  const char* expectedEnd = nullptr;
  const double expected = Expected(s, &expectedEnd);
  Check(SameDouble(value, expected) && end == expectedEnd, "str_to_double agrees with strtod",
        Report(text, value, expected, end - s, expectedEnd - s));

  // The whole text is a number exactly when the conversion uses all of it
  // and it is no word (inf, infinity, nan). The counted forms see the same
  // text, unless a zero byte lies among the bytes they are given.
  const std::size_t length = std::strlen(s);
  const bool whole = length > 0 && end == s + length;
  const char* afterSign = s + ((*s == '+' || *s == '-') ? 1 : 0);
  const bool word = StartsNoCase(afterSign, "inf") || StartsNoCase(afterSign, "nan");
  const bool isNumber = whole && !word;
  using NVS = TarnFormatUtil::NumericValueState;
  NVS state = TarnFormatUtil::NVS_INVALID;
  if (whole && word)
    state = std::isnan(value) ? TarnFormatUtil::NVS_NAN : TarnFormatUtil::NVS_INFINITE;
  else if (isNumber && std::isinf(value))
    state = TarnFormatUtil::NVS_OVERFLOW;
  else if (isNumber && value == 0.0 && !ZeroMantissa(s, end))
    state = TarnFormatUtil::NVS_UNDERFLOW;
  else if (isNumber)
    state = TarnFormatUtil::NVS_VALID;
  const char* bytes = reinterpret_cast<const char*>(data); // not terminated
  const bool zeroInside = length < size;
  Check(TarnFormatUtil::is_double(s) == isNumber &&
            TarnFormatUtil::is_double(bytes, size) == (isNumber && !zeroInside),
        "is_double agrees with the conversion", Escaped(text));
  Check(TarnFormatUtil::is_valid_double(s, length) == state &&
            TarnFormatUtil::is_valid_double(bytes, size) ==
                (zeroInside ? TarnFormatUtil::NVS_INVALID : state),
        "is_valid_double agrees with the conversion", Escaped(text));

  // ToDouble skips the blanks first, and a number must be found after them.
  const char* afterBlanks = s;
  while (IsBlank(*afterBlanks))
    ++afterBlanks;
  const double direct = TarnFormatUtil::str_to_double(afterBlanks, &end);
  double converted = -1.0;
  const ZelStatusCode status = TarnStringUtil::ToDouble(s, converted);
  const bool found = end != afterBlanks;
  Check((status == STATUS_OK) == found && SameDouble(converted, found ? direct : 0.0),
        "ToDouble reads the number after the blanks", Escaped(text));
  return 0;
}
