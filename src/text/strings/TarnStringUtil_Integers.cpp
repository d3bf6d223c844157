//===- TarnStringUtil_Integers.cpp - Integer text conversions ---------------===//
//
// Integers to decimal text and back. The readers are lenient on purpose:
// trailing text is ignored, a lone sign reads as 0, and digits wrap around
// instead of failing on overflow.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include "text/strings/TextCharClass.h"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <type_traits>

namespace {

// Appends the signed decimal text of v. The smallest value of T appends
// "-0": its negation overflows, so no digit is produced and the zero
// fallback prints "0" after the sign. Callers rely on that text.
template <class T>
void AppendSigned(std::string& out, T v) {
  static_assert(std::is_signed<T>::value, "signed types only");
  if (v == std::numeric_limits<T>::min()) {
    out.append("-0");
    return;
  }
  char buf[24]; // 20 digits of 2^64 plus sign
  const auto res = std::to_chars(buf, buf + sizeof buf, v);
  out.append(buf, res.ptr);
}

template <class T>
std::string UnsignedText(T v) {
  char buf[24];
  const auto res = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, res.ptr);
}

// Reads blanks, an optional sign and decimal digits from the NUL-terminated
// text s into out, wrapping around in the width of T.
template <class T>
ZelStatusCode ParseLenient(const char* s, T& out) {
  using U = typename std::make_unsigned<T>::type;
  out = 0;
  if (s == nullptr)
    return ERR_NOT_FOUND;
  while (tarn_detail::IsBlank(*s))
    ++s;
  const char* const start = s;
  bool negative = false;
  if (*s == '+' || *s == '-') {
    negative = (*s == '-');
    ++s;
  }
  U value = 0;
  for (;; ++s) {
    const unsigned digit = static_cast<unsigned char>(*s) - static_cast<unsigned>('0');
    if (digit > 9)
      break;
    value = static_cast<U>(value * 10u + digit); // unsigned: wraps, no UB
  }
  if (s == start)
    return ERR_NOT_FOUND;
  if (negative)
    value = static_cast<U>(U(0) - value);
  out = static_cast<T>(value); // modulo 2^N
  return STATUS_OK;
}

} // namespace

std::string TarnStringUtil::String(int v) {
  std::string s;
  AppendSigned(s, v);
  return s;
}

std::string TarnStringUtil::String(std::int64_t v) {
  std::string s;
  AppendSigned(s, v);
  return s;
}

std::string TarnStringUtil::String(unsigned int v) { return UnsignedText(v); }

std::string TarnStringUtil::String(std::uint64_t v) { return UnsignedText(v); }

std::string TarnStringUtil::String(const std::list<int>& values) {
  std::string s;
  for (int v : values) {
    AppendSigned(s, v);
    s.push_back(' ');
  }
  return s;
}

std::string TarnStringUtil::String(const int* p, std::size_t n) {
  std::string s;
  if (p == nullptr)
    return s;
  for (std::size_t i = 0; i < n; ++i) {
    AppendSigned(s, p[i]);
    s.push_back(' ');
  }
  return s;
}

std::string& TarnStringUtil::Append(std::string& s, int v) {
  AppendSigned(s, v);
  return s;
}

std::string& TarnStringUtil::AssignSize(std::string& s, std::uint64_t v) {
  s = UnsignedText(v);
  return s;
}

ZelStatusCode TarnStringUtil::ToInt(const std::string& s, int& out) {
  return ParseLenient(s.c_str(), out);
}

ZelStatusCode TarnStringUtil::ToInt(const char* s, int& out) { return ParseLenient(s, out); }

ZelStatusCode TarnStringUtil::ToInt64(const std::string& s, std::int64_t& out) {
  return ParseLenient(s.c_str(), out);
}

ZelStatusCode TarnStringUtil::ToInt64(const char* s, std::int64_t& out) {
  return ParseLenient(s, out);
}

ZelStatusCode TarnStringUtil::ToSizeT(const std::string& s, std::uint64_t& out) {
  // The unsigned scan conversion of scanf: strtoull's syntax in base 10,
  // saturating at the largest value on overflow (where scanf itself would
  // leave the result undefined).
  const char* p = s.c_str();
  while (tarn_detail::IsBlank(*p))
    ++p;
  const char* digits = p;
  if (*digits == '+' || *digits == '-')
    ++digits;
  if (*digits < '0' || *digits > '9')
    return ERR_NOT_FOUND;
  errno = 0;
  const unsigned long long v = std::strtoull(p, nullptr, 10);
  out = (errno == ERANGE) ? std::numeric_limits<std::uint64_t>::max()
                          : static_cast<std::uint64_t>(v);
  return STATUS_OK;
}
