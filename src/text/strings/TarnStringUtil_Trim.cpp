//===- TarnStringUtil_Trim.cpp - Trimming, chopping, padding ----------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include "text/strings/TextCharClass.h"

#include <algorithm>
#include <cstring>

using tarn_detail::IsBlank;

const char* const TarnStringUtil::WHITE_SPACES_ALL = " \t\n\v\r\f";
const char* const TarnStringUtil::WHITE_SPACES_DELIMITERS = " \t";

std::string& TarnStringUtil::Trim(std::string& s) { return Trim(s, WHITE_SPACES_ALL); }

std::string& TarnStringUtil::Trim(std::string& s, const char* set) {
  if (set == nullptr)
    return s;
  const std::size_t first = s.find_first_not_of(set);
  if (first == std::string::npos) {
    s.clear();
    return s;
  }
  s.erase(s.find_last_not_of(set) + 1);
  s.erase(0, first);
  return s;
}

std::list<std::string>& TarnStringUtil::Trim(std::list<std::string>& l) {
  for (std::string& s : l)
    Trim(s);
  return l;
}

std::vector<std::string>& TarnStringUtil::Trim(std::vector<std::string>& v) {
  for (std::string& s : v)
    Trim(s);
  return v;
}

std::string& TarnStringUtil::TrimLeft(std::string& s) {
  const std::size_t first = s.find_first_not_of(WHITE_SPACES_ALL);
  if (first == std::string::npos)
    s.clear();
  else
    s.erase(0, first);
  return s;
}

std::string& TarnStringUtil::TrimRight(std::string& s) {
  const std::size_t last = s.find_last_not_of(WHITE_SPACES_ALL);
  if (last != std::string::npos) // all-blank strings stay as they are
    s.erase(last + 1);
  return s;
}

std::string& TarnStringUtil::chop(std::string& s) { return chop_right(s); }

std::string& TarnStringUtil::chop_right(std::string& s) {
  if (!s.empty())
    s.pop_back();
  return s;
}

std::string& TarnStringUtil::chop_left(std::string& s) {
  if (!s.empty())
    s.erase(0, 1);
  return s;
}

std::string TarnStringUtil::get_chopped(const std::string& s) { return get_chopped_right(s); }

std::string TarnStringUtil::get_chopped_right(const std::string& s) {
  return s.empty() ? s : s.substr(0, s.size() - 1);
}

std::string TarnStringUtil::get_chopped_left(const std::string& s) {
  return s.empty() ? s : s.substr(1);
}

std::size_t TarnStringUtil::remove_eol(char* s) {
  if (s == nullptr)
    return 0;
  std::size_t n = std::strlen(s);
  while (n > 0 && (s[n - 1] == '\n' || s[n - 1] == '\r'))
    s[--n] = '\0';
  return n;
}

char* TarnStringUtil::remove_white_spaces(char* s) {
  if (s == nullptr)
    return nullptr;
  char* out = s;
  for (const char* in = s; *in != '\0'; ++in)
    if (!IsBlank(*in))
      *out++ = *in;
  *out = '\0';
  return out;
}

std::string& TarnStringUtil::remove_white_spaces(std::string& s) {
  s.erase(std::remove_if(s.begin(), s.end(), IsBlank), s.end());
  return s;
}

std::string& TarnStringUtil::PadLeft(std::string& s, std::size_t n, char c) {
  if (s.size() < n)
    s.insert(0, n - s.size(), c);
  return s;
}

std::u16string& TarnStringUtil::PadLeft(std::u16string& s, std::size_t n, char16_t c) {
  if (s.size() < n)
    s.insert(0, n - s.size(), c);
  return s;
}

std::string& TarnStringUtil::PadRight(std::string& s, std::size_t n, char c) {
  if (s.size() < n)
    s.append(n - s.size(), c);
  return s;
}

void TarnStringUtil::CopyToFString(char* dest, std::size_t n, const std::string& s) {
  if (dest == nullptr)
    return;
  const std::size_t copied = std::min(s.size(), n);
  std::memcpy(dest, s.data(), copied);
  std::memset(dest + copied, ' ', n - copied);
}
