//===- TarnStringUtil_Quote.cpp - Quoted strings ----------------------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include "text/strings/TextCharClass.h"

bool TarnStringUtil::is_quoted_str(const std::string& s, char q) {
  return s.size() >= 2 && s.front() == q && s.back() == q;
}

bool TarnStringUtil::is_quoted_str(const char16_t* s, char16_t q) {
  if (s == nullptr || s[0] == u'\0' || s[1] == u'\0')
    return false;
  std::size_t n = 2;
  while (s[n] != u'\0')
    ++n;
  return s[0] == q && s[n - 1] == q;
}

std::string& TarnStringUtil::extend_quoted_str(std::string& s, const std::string& prefix,
                                               const std::string& suffix, char q) {
  std::size_t first = 0;
  while (first < s.size() && tarn_detail::IsBlank(s[first]))
    ++first;
  std::string body = s.substr(first);
  const std::size_t last = body.find_last_not_of(WHITE_SPACES_ALL);
  body.erase(last == std::string::npos ? 0 : last + 1);

  const bool quoted = is_quoted_str(body, q);
  if (quoted)
    body = body.substr(1, body.size() - 2);
  // Built apart from s: prefix or suffix may be s itself.
  std::string result;
  result.reserve(body.size() + prefix.size() + suffix.size() + 2);
  if (quoted)
    result.push_back(q);
  result.append(prefix).append(body).append(suffix);
  if (quoted)
    result.push_back(q);
  s.swap(result);
  return s;
}

std::string& TarnStringUtil::truncate_quoted_str(std::string& s, std::size_t n, char q) {
  if (n == 0) {
    s.clear();
    return s;
  }
  if (s.size() <= n)
    return s;
  // Longer than 2 here, unlike is_quoted_str's "at least 2" (kept on purpose).
  const bool quoted = s.size() > 2 && s.front() == q && s.back() == q;
  if (quoted) {
    s.resize(n - 1);
    s.push_back(q);
  } else {
    s.resize(n);
  }
  return s;
}
