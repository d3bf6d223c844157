//===- fuzz/to_int_fuzzer.cpp - Integers from text ---------------------------===//
//
// One input is a text (up to its first zero byte). ToInt64 must read what
// strtol reads wherever strtol does not overflow, and beyond that, up to
// 2^64 - 1, the magnitude strtoull reads, wrapped around in 64 bits with
// the sign applied; ToInt must give the same number wrapped around in 32
// bits. Where strtol finds no digits the result is 0: STATUS_OK after a
// lone sign (the library's lenient rule), ERR_NOT_FOUND otherwise.
//
//===----------------------------------------------------------------------===//
#include "FuzzSupport.h"

#include "TarnUtilities/text/TarnStringUtil.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <string>

using tarn_fuzz::Check;
using tarn_fuzz::Escaped;

namespace {
bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string all(reinterpret_cast<const char*>(data), size);
  const std::string text = all.substr(0, all.find('\0'));
  const char* s = text.c_str();

  int value32 = -1;
  std::int64_t value64 = -1;
  const ZelStatusCode status32 = TarnStringUtil::ToInt(s, value32);
  const ZelStatusCode status64 = TarnStringUtil::ToInt64(s, value64);
  int viaString32 = -1;
  std::int64_t viaString64 = -1;
  Check(TarnStringUtil::ToInt(all, viaString32) == status32 && viaString32 == value32 &&
            TarnStringUtil::ToInt64(all, viaString64) == status64 && viaString64 == value64,
        "the string forms read up to the first zero byte", Escaped(all));

  const char* p = s;
  while (IsBlank(*p))
    ++p;
  const bool sign = *p == '+' || *p == '-';
  const char* digits = p + (sign ? 1 : 0);
  const ZelStatusCode expectedStatus = sign || IsDigit(*digits) ? STATUS_OK : ERR_NOT_FOUND;
  Check(status32 == expectedStatus && status64 == expectedStatus,
        "a sign or a digit after the blanks is found", Escaped(text));
  if (!IsDigit(*digits)) {
    Check(value32 == 0 && value64 == 0, "no digits read as 0", Escaped(text));
    return 0;
  }

  errno = 0;
  const long peer = std::strtol(s, nullptr, 10);
  if (errno != ERANGE)
    Check(value64 == peer, "ToInt64 reads what strtol reads", Escaped(text));
  errno = 0;
  const unsigned long long magnitude = std::strtoull(digits, nullptr, 10);
  if (errno != ERANGE) {
    const std::uint64_t wrapped = *p == '-' ? 0 - static_cast<std::uint64_t>(magnitude)
                                            : static_cast<std::uint64_t>(magnitude);
    Check(static_cast<std::uint64_t>(value64) == wrapped,
          "ToInt64 wraps around in 64 bits", Escaped(text));
  }
  Check(static_cast<std::uint32_t>(value32) == static_cast<std::uint32_t>(value64),
        "ToInt wraps around in 32 bits", Escaped(text));
  return 0;
}
