//===- TarnFormatUtilFloatToStr.cpp - Shortest text of a float --------------===//
//
// A float is printed with the digits that identify it among floats (9 or
// fewer), not with the 17 that its value as a double would need: 0.1f gives
// "0.1", not "0.100000001490116".
//
// How: std::to_chars gives the float's shortest digits D; D read as a double
// gives d; the free format of d then prints exactly D. (No shorter decimal
// lies within half a double ulp of d: two decimals of at most 9 digits differ
// by at least 1e-9 of their magnitude, far more than 2^-53.) So the layout
// is the formatter's own and the digits are the float's.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include "TarnUtilities/text/FloatingPointFormatter.h"

#include <charconv>
#include <cmath>

namespace {

const FloatingPointFormatter& DefaultFormatter() {
  static const FloatingPointFormatter formatter; // default switches
  return formatter;
}

} // namespace

std::string TarnFormatUtil::float_to_str(float value) {
  if (std::isnan(value))
    return NAN_STRING;
  if (std::isinf(value))
    return value < 0 ? std::string("-") + INF_STRING : std::string(INF_STRING);
  // "-1.17549435e-38": sign, 9 digits, point, "e-38".
  char shortest[32];
  const std::to_chars_result r =
      std::to_chars(shortest, shortest + sizeof shortest - 1, value, std::chars_format::scientific);
  *r.ptr = '\0';
  const double asDouble = str_to_double(shortest, nullptr);
  char text[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
  const char* const end = DefaultFormatter().WriteFreeFormat(text, asDouble);
  return std::string(text, static_cast<std::size_t>(end - text));
}
