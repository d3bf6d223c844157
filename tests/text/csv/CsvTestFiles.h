//===- CsvTestFiles.h - CSV reading for tests ------------------------------===//
//
// An independent reader that splits CSV text and parses numbers with strtod,
// so that tests compare what was written with the C library's reading of it.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_TESTS_TEXT_CSVTESTFILES_H
#define TARN_TESTS_TEXT_CSVTESTFILES_H

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace csvtest {

/// Lines of a file without their "\n"; a file must end with "\n".
inline std::vector<std::string> ReadLines(const std::string& path) {
  const std::string text = tarn_test::ReadFile(path);
  std::vector<std::string> lines;
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = text.find('\n', begin);
    if (end == std::string::npos) {
      ADD_FAILURE() << path << " does not end with a line end";
      lines.push_back(text.substr(begin));
      break;
    }
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

/// The tokens of a line; an empty line has no tokens.
inline std::vector<std::string> Split(const std::string& line, const std::string& separator) {
  std::vector<std::string> tokens;
  if (line.empty())
    return tokens;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = line.find(separator, begin);
    tokens.push_back(line.substr(begin, end - begin));
    if (end == std::string::npos)
      return tokens;
    begin = end + separator.size();
  }
}

/// strtod of a whole token; a token with unparsed characters fails the test.
inline double ParseDouble(const std::string& token) {
  char* end = nullptr;
  const double x = std::strtod(token.c_str(), &end);
  EXPECT_TRUE(!token.empty() && *end == '\0') << "not a number: '" << token << "'";
  return x;
}

inline std::uint64_t Bits(double x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

} // namespace csvtest

#endif // TARN_TESTS_TEXT_CSVTESTFILES_H
