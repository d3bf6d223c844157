//===- TarnStringUtil_Split.cpp - Splitting into tokens ---------------------===//
#include "TarnUtilities/text/TarnStringTokenizer.h"
#include "TarnUtilities/text/TarnStringUtil.h"

std::size_t TarnStringUtil::Split(const std::string& s, const char* separators,
                                  const char* trimSet, std::list<std::string>& out) {
  out.clear();
  if (s.empty())
    return 0;
  TarnStringTokenizer tokenizer(s.size(), separators);
  const std::size_t n = tokenizer.SplitLine(s.c_str());
  for (std::size_t i = 0; i < n; ++i) {
    out.emplace_back(tokenizer.GetToken(i));
    Trim(out.back(), trimSet);
  }
  return n;
}

std::size_t TarnStringUtil::Split(const std::string& s, const char* separators,
                                  std::vector<std::string>& out) {
  out.clear();
  if (s.empty())
    return 0;
  TarnStringTokenizer tokenizer(s.size(), separators);
  const std::size_t n = tokenizer.SplitLine(s.c_str());
  out.reserve(n);
  for (std::size_t i = 0; i < n; ++i)
    out.emplace_back(tokenizer.GetToken(i));
  return n;
}

ZelStatusCode TarnStringUtil::SplitPair(const std::string& s, const std::string& sep,
                                        std::pair<std::string, std::string>& out) {
  const std::size_t p = sep.empty() ? std::string::npos : s.find(sep);
  if (p == std::string::npos) {
    out.first = s;
    out.second.clear();
    return ERR_NOT_FOUND;
  }
  // Only one character is skipped after p, whatever the separator's length.
  std::string second = s.substr(p + 1);
  out.first = s.substr(0, p);
  out.second.swap(second);
  return STATUS_OK;
}
