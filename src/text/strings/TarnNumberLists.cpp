//===- TarnNumberLists.cpp - Lists of numbers as text -----------------------===//
//
// TarnFormatUtil::int_list_to_str and double_list_to_str: the compact list
// text that logs and the Fortran binding print.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace {
const char* const kSeparator = ", ";
// Runs at least this long are printed as a range: a range of two saves nothing.
constexpr std::size_t kMinRange = 3;

// Appends the decimal text of v; INT_MIN too is printed in full.
void AppendInt(std::string& text, int v) {
  char digits[12]; // "-2147483648": 11 characters
  const std::to_chars_result r = std::to_chars(digits, digits + sizeof digits, v);
  text.append(digits, r.ptr);
}
} // namespace

std::string TarnFormatUtil::int_list_to_str(const int* values, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count;) {
    // The run of consecutive values from i to last (64-bit: no overflow at INT_MAX).
    std::size_t last = i;
    while (last + 1 < count &&
           static_cast<std::int64_t>(values[last + 1]) == static_cast<std::int64_t>(values[last]) + 1)
      ++last;
    if (!text.empty())
      text += kSeparator;
    AppendInt(text, values[i]);
    if (last + 1 - i >= kMinRange) {
      text += '-';
      AppendInt(text, values[last]);
      i = last + 1;
    } else {
      ++i;
    }
  }
  return text;
}

std::string TarnFormatUtil::double_list_to_str(const double* values, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0)
      text += kSeparator;
    const double x = values[i];
    if (std::isnan(x))
      text += NAN_STRING;
    else if (std::isinf(x))
      text += x < 0 ? std::string("-") + INF_STRING : std::string(INF_STRING);
    else
      text += TarnStringUtil::String(x);
  }
  return text;
}
