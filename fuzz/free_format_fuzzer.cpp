//===- fuzz/free_format_fuzzer.cpp - Shortest text and back -----------------===//
//
// The first 8 bytes of an input are the bits of a double, the next 4 (when
// there) the two layout switches of the formatter as signed 16-bit numbers.
// The free format of the double must read back with str_to_double to the
// same bits (a NaN to a NaN), must carry exactly as many significant digits
// as the shortest text std::to_chars finds, and must fit the documented
// buffer size whatever the switches are.
//
//===----------------------------------------------------------------------===//
#include "FuzzSupport.h"

#include "TarnUtilities/text/FloatingPointFormatter.h"
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

using tarn_fuzz::Check;

namespace {

// The number of significant digits of a decimal text: digits of the
// mantissa without the leading zeros and without the trailing zeros.
std::size_t SignificantDigits(std::string_view text) {
  std::string digits;
  for (char c : text.substr(0, text.find_first_of("eE")))
    if (c >= '0' && c <= '9')
      digits.push_back(c);
  const std::size_t first = digits.find_first_not_of('0');
  if (first == std::string::npos)
    return 1;
  return digits.find_last_not_of('0') - first + 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < sizeof(double))
    return -1;
  double x;
  std::memcpy(&x, data, sizeof x);
  FloatingPointFormatter formatter;
  if (size >= sizeof(double) + 4) {
    std::int16_t switches[2];
    std::memcpy(switches, data + sizeof(double), sizeof switches);
    formatter.SetPosExpFmtSwitch(switches[0]);
    formatter.SetNegExpFmtSwitch(switches[1]);
  }

  // Written into a buffer of exactly the documented size, so that ASan sees
  // any byte written beyond it.
  std::vector<char> buffer(FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE);
  char* const begin = buffer.data();
  char* const end = formatter.WriteFreeFormat(begin, x);
  Check(end > begin && end < begin + FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE,
        "the free format fits its buffer");
  *end = '\0';
  const std::string text(begin, end);

  const char* readEnd = nullptr;
  const double back = TarnFormatUtil::str_to_double(text.c_str(), &readEnd);
  std::uint64_t pattern;
  std::memcpy(&pattern, &x, sizeof pattern);
  char bits[80];
  std::snprintf(bits, sizeof bits, "%a (%016llx)", x, static_cast<unsigned long long>(pattern));
  Check(readEnd == text.c_str() + text.size(), "the free format is read whole",
        text + " from " + bits);
  if (std::isnan(x)) {
    Check(std::isnan(back), "NaN reads back as NaN", text);
    return 0;
  }
  Check(std::memcmp(&back, &x, sizeof x) == 0, "the free format reads back to the same bits",
        text + " from " + bits);
  if (std::isinf(x))
    return 0;

  char shortest[64];
  const auto result =
      std::to_chars(shortest, shortest + sizeof shortest, x, std::chars_format::scientific);
  const std::string_view peer(shortest, result.ptr - shortest);
  Check(SignificantDigits(text) == SignificantDigits(peer),
        "the free format has as many digits as the shortest text",
        text + " against " + std::string(peer));
  return 0;
}
