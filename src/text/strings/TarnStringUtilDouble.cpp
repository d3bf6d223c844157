//===- text/TarnStringUtilDouble.cpp - Doubles to text --------------------===//
//
// The double conversions of TarnStringUtil, all printed by a
// FloatingPointFormatter. The default formatter is a function-local static:
// C++ guarantees its one-time, thread-safe construction, and the formatter
// keeps no state between calls, so concurrent String(double) calls are safe.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/FloatingPointFormatter.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <algorithm>
#include <vector>

namespace {

const FloatingPointFormatter& DefaultFormatter() {
  static const FloatingPointFormatter formatter;
  return formatter;
}

std::string Limited(double v, std::size_t len, const FloatingPointFormatter& formatter,
                    FloatingPointFormatter::ExponentStyle style,
                    FloatingPointFormatter::PaddingOption padding) {
  std::vector<char> buf(std::min<std::size_t>(std::max<std::size_t>(len, 8), std::size_t(1) << 20) + 1);
  char* end = formatter.WriteLimitedLength(buf.data(), v, len, style, padding, ' ');
  return std::string(buf.data(), end);
}

} // namespace

std::string TarnStringUtil::String(double v) { return String(v, DefaultFormatter()); }

std::string TarnStringUtil::String(double v, const FloatingPointFormatter& formatter) {
  char buf[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
  char* end = formatter.WriteFreeFormat(buf, v);
  return std::string(buf, end);
}

std::string TarnStringUtil::String(double v, std::size_t len, const FloatingPointFormatter& formatter) {
  return Limited(v, len, formatter, FloatingPointFormatter::EXP_LOWER, FloatingPointFormatter::PAD_NONE);
}

std::string TarnStringUtil::ToFixedFormat(double v, std::size_t len, const FloatingPointFormatter& formatter,
                                          bool fortranExponent) {
  return Limited(v, len, formatter,
                 fortranExponent ? FloatingPointFormatter::EXP_FORTRAN : FloatingPointFormatter::EXP_LOWER,
                 FloatingPointFormatter::PAD_LEFT);
}
