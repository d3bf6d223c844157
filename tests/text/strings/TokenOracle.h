//===- TokenOracle.h - Brute-force tokenizer for tests ----------*- C++ -*-===//
//
// The maximal runs of bytes not in `separators`, found by the most direct
// means, as the oracle for the tokenizer and the split helpers.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_TESTS_TEXT_TOKENORACLE_H
#define TARN_TESTS_TEXT_TOKENORACLE_H

#include <cstring>
#include <string>
#include <vector>

namespace tarn_test {

inline std::vector<std::string> BruteForceTokens(const std::string& s, const char* separators) {
  std::vector<std::string> tokens;
  std::string current;
  for (char c : s) {
    if (c == '\0')
      break;
    if (std::strchr(separators, c) != nullptr) {
      if (!current.empty())
        tokens.push_back(current);
      current.clear();
    } else {
      current.push_back(c);
    }
  }
  if (!current.empty())
    tokens.push_back(current);
  return tokens;
}

} // namespace tarn_test

#endif // TARN_TESTS_TEXT_TOKENORACLE_H
