//===- TarnFormatUtil.cpp - Numbers from text -------------------------------===//
//
// The public face of the decimal reader: classification of whole texts and
// str_to_double. Scanning is in DecimalScanner.h, conversion in
// DecimalToDouble.cpp.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include "text/strings/DecimalScanner.h"
#include "text/strings/DecimalToDouble.h"

#include <charconv>
#include <cmath>

using TarnFormatDetail::Bounded;
using TarnFormatDetail::DecimalText;
using TarnFormatDetail::ScanDecimal;
using TarnFormatDetail::Unbounded;

namespace {

// Computes whether [p, p + n) is an optional sign and at least one digit.
bool IsIntegerText(const char* p, std::size_t n) {
  if (n > 0 && (*p == '+' || *p == '-')) {
    ++p;
    --n;
  }
  if (n == 0)
    return false;
  for (; n > 0; --n, ++p)
    if (!TarnFormatDetail::IsDigit(*p))
      return false;
  return true;
}

} // namespace

bool TarnFormatUtil::is_int(const char* s) {
  if (s == nullptr)
    return false;
  const char* p = (*s == '+' || *s == '-') ? s + 1 : s;
  if (!TarnFormatDetail::IsDigit(*p))
    return false;
  while (TarnFormatDetail::IsDigit(*p))
    ++p;
  return *p == '\0';
}

bool TarnFormatUtil::is_int(const char* s, std::size_t n) {
  return s != nullptr && IsIntegerText(s, n);
}

bool TarnFormatUtil::is_double(const char* s) {
  if (s == nullptr)
    return false;
  const DecimalText d = ScanDecimal(s, Unbounded());
  return d.kind == DecimalText::kNumber && *d.end == '\0';
}

bool TarnFormatUtil::is_double(const char* s, std::size_t n) {
  if (s == nullptr)
    return false;
  const DecimalText d = ScanDecimal(s, Bounded{s + n});
  return d.kind == DecimalText::kNumber && d.end == s + n;
}

TarnFormatUtil::NumericValueState TarnFormatUtil::is_valid_double(const char* s, std::size_t n) {
  if (s == nullptr)
    return NVS_INVALID;
  const DecimalText d = ScanDecimal(s, Bounded{s + n});
  if (d.kind == DecimalText::kNone || d.end != s + n)
    return NVS_INVALID;
  if (d.kind == DecimalText::kNaN)
    return NVS_NAN;
  if (d.kind == DecimalText::kInfinity)
    return NVS_INFINITE;
  const double value = TarnFormatDetail::DecimalToDouble(d);
  if (std::isinf(value))
    return NVS_OVERFLOW;
  if (value == 0.0 && d.digitCount > 0)
    return NVS_UNDERFLOW;
  return NVS_VALID;
}

double TarnFormatUtil::str_to_double(const char* s, const char** end) {
  if (s == nullptr) {
    if (end != nullptr)
      *end = s;
    return 0.0;
  }
  double value;
  if (TarnFormatDetail::ReadDoubleQuick(s, end, value))
    return value;
  return TarnFormatDetail::ReadDouble(s, end);
}

std::string TarnFormatUtil::int_to_str(int value, char fill, int width, bool fillLeft) {
  char digits[16]; // "-2147483648" has 11 characters
  const char* const last = std::to_chars(digits, digits + sizeof digits, value).ptr;
  const std::size_t length = static_cast<std::size_t>(last - digits);
  const std::size_t padding =
      width > 0 && static_cast<std::size_t>(width) > length ? width - length : 0;
  std::string text;
  text.reserve(length + padding);
  if (!fillLeft) {
    text.append(digits, length);
    text.append(padding, fill);
  } else if (fill == '0' && value < 0) {
    // Zeros go between the sign and the digits, as printf's "%05d" does.
    text.push_back('-');
    text.append(padding, '0');
    text.append(digits + 1, length - 1);
  } else {
    text.append(padding, fill);
    text.append(digits, length);
  }
  return text;
}
