//===- TarnStringUtil_Join.cpp - Joining, searching, hashing, dumping -------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include "text/strings/TextCharClass.h"

#include <algorithm>
#include <cstring>
#include <ctime>

namespace {

template <class StringT>
StringT& JoinInto(StringT& out, const std::vector<StringT>& v, const StringT& sep) {
  out.clear();
  if (v.empty())
    return out;
  std::size_t total = sep.size() * (v.size() - 1);
  for (const StringT& s : v)
    total += s.size();
  out.reserve(total);
  out.append(v[0]);
  for (std::size_t i = 1; i < v.size(); ++i)
    out.append(sep).append(v[i]);
  return out;
}

} // namespace

std::string& TarnStringUtil::Concat(std::string& out, const std::vector<std::string>& v,
                                    const std::string& sep) {
  return JoinInto(out, v, sep);
}

std::u16string& TarnStringUtil::Concat(std::u16string& out, const std::vector<std::u16string>& v,
                                       const std::u16string& sep) {
  return JoinInto(out, v, sep);
}

std::string& TarnStringUtil::Concat(std::string& out, int n, const char* const* items,
                                    const char* sep) {
  out.clear();
  if (n < 1 || items == nullptr)
    return out;
  if (items[0] != nullptr)
    out.append(items[0]);
  for (int i = 1; i < n; ++i) {
    if (sep != nullptr)
      out.append(sep);
    if (items[i] != nullptr)
      out.append(items[i]);
  }
  return out;
}

int TarnStringUtil::Find(const std::vector<std::string>& v, const char* s) {
  if (s == nullptr)
    return -1;
  for (std::size_t i = 0; i < v.size(); ++i)
    if (v[i] == s)
      return static_cast<int>(i);
  return -1;
}

std::int64_t TarnStringUtil::find_substr_nocase(const char* hay, const char* needle) {
  using tarn_detail::FoldUpper;
  if (hay == nullptr || needle == nullptr || needle[0] == '\0')
    return -1;
  const char first = FoldUpper(needle[0]);
  const char* p = hay;
  while (*p != '\0' && FoldUpper(*p) != first)
    ++p;
  // No occurrence, or one on the last byte of hay: no match (deliberately
  // also for a one-character needle).
  if (*p == '\0' || p[1] == '\0')
    return -1;
  const std::int64_t index = p - hay;
  // Only this first occurrence is tried.
  for (std::size_t k = 1; needle[k] != '\0'; ++k)
    if (p[k] == '\0' || FoldUpper(p[k]) != FoldUpper(needle[k]))
      return -1;
  return index;
}

std::int32_t TarnStringUtil::Hash(const std::string& s) {
  // 0x9E3779B1 = 2654435761, the 32-bit golden-ratio constant.
  std::uint32_t h = 0x9E3779B1u;
  for (char c : s) {
    const auto widened = static_cast<std::uint32_t>(static_cast<std::int32_t>(
        static_cast<signed char>(c))); // bytes above 0x7F count as negative
    h = (h ^ widened) << 1;
  }
  return static_cast<std::int32_t>(h);
}

const char* TarnStringUtil::DumpBufferHex(const void* bytes, std::size_t n, std::string& out) {
  static const char kDigits[] = "0123456789ABCDEF";
  out.clear();
  if (bytes == nullptr)
    return out.c_str();
  const auto* p = static_cast<const unsigned char*>(bytes);
  out.resize(2 * n);
  for (std::size_t i = 0; i < n; ++i) {
    out[2 * i] = kDigits[p[i] >> 4];
    out[2 * i + 1] = kDigits[p[i] & 0x0F];
  }
  return out.c_str();
}

std::string TarnStringUtil::BinToString(unsigned char b) {
  std::string out(10, ' ');
  // Positions 1-4 hold bits 7-4, positions 6-9 bits 3-0.
  for (int bit = 7; bit >= 0; --bit) {
    const std::size_t pos = (bit >= 4) ? static_cast<std::size_t>(8 - bit)
                                       : static_cast<std::size_t>(9 - bit);
    out[pos] = ((b >> bit) & 1) ? '1' : '0';
  }
  return out;
}

std::string TarnStringUtil::BinToString(int v) {
  const auto u = static_cast<std::uint32_t>(v);
  std::string out;
  out.reserve(40);
  for (int shift = 24; shift >= 0; shift -= 8)
    out += BinToString(static_cast<unsigned char>((u >> shift) & 0xFF));
  return out;
}

std::string TarnStringUtil::get_system_time_str() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  // asctime needs 26 bytes; a year beyond 9999 needs a few more.
  char text[64] = {0};
  if (localtime_r(&now, &local) == nullptr || asctime_r(&local, text) == nullptr)
    return std::string();
  std::string s(text);
  return TrimRight(s);
}

std::size_t TarnStringUtil::num_empty_trailing_strings(const std::vector<std::string>& v) {
  std::size_t n = 0;
  for (auto it = v.rbegin(); it != v.rend() && it->empty(); ++it)
    ++n;
  return n;
}
