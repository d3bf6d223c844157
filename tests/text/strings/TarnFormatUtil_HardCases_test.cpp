//===- TarnFormatUtil_HardCases_test.cpp - Shared conversion test files -----===//
//
// Runs every file of hard decimal-to-double cases found in the shared data
// directory (TARN_SHARED_DATA_DIR, searched recursively) through
// str_to_double. A file takes part when its name mentions one of
// "strtod", "double", "float", "decimal", "fxx" or "conversion". Two line
// formats are understood, one case per line:
//
//   3C00 3F800000 3FF0000000000000 1      expected bits in hex (binary16,
//                                         binary32, binary64), then the text
//   1.00000000000000011102230246251565    just the text: strtod is the oracle
//
// Empty lines and lines starting with '#' are skipped. Every case must pass
// and the whole text must be read. Without such files the test is skipped.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::uint64_t Bits(double d) {
  std::uint64_t b;
  std::memcpy(&b, &d, sizeof b);
  return b;
}

bool IsHex(const std::string& s, std::size_t width) {
  return s.size() == width &&
         std::all_of(s.begin(), s.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
}

bool NamesConversionCases(const fs::path& path) {
  std::string name = path.filename().string();
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
  for (const char* word : {"strtod", "double", "float", "decimal", "fxx", "conversion"})
    if (name.find(word) != std::string::npos)
      return true;
  return false;
}

std::vector<fs::path> CaseFiles() {
  std::vector<fs::path> files;
  std::error_code ec;
  const fs::path root(TARN_SHARED_DATA_DIR);
  if (!fs::is_directory(root, ec))
    return files;
  for (fs::recursive_directory_iterator it(root, ec), end; !ec && it != end; it.increment(ec)) {
    if (it->is_regular_file(ec) && NamesConversionCases(it->path()))
      files.push_back(it->path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Checks one line; returns an empty string when it passes, else a message.
std::string CheckLine(const std::string& line) {
  std::istringstream in(line);
  std::string f16, f32, f64, text;
  std::uint64_t expected = 0;
  if ((in >> f16 >> f32 >> f64 >> text) && IsHex(f16, 4) && IsHex(f32, 8) && IsHex(f64, 16)) {
    expected = std::strtoull(f64.c_str(), nullptr, 16);
  } else {
    text = line;
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
      text.pop_back();
    const std::size_t first = text.find_first_not_of(" \t");
    text = text.substr(first == std::string::npos ? text.size() : first);
    expected = Bits(std::strtod(text.c_str(), nullptr));
  }
  const char* end = nullptr;
  const std::uint64_t actual = Bits(TarnFormatUtil::str_to_double(text.c_str(), &end));
  if (actual != expected)
    return "wrong value for '" + text + "'";
  if (*end != '\0')
    return "text not read to its end: '" + text + "'";
  return std::string();
}

TEST(TarnFormatUtilHardCases, SharedCaseFilesPassWhole) {
  const std::vector<fs::path> files = CaseFiles();
  if (files.empty())
    GTEST_SKIP() << "no conversion case files under " << TARN_SHARED_DATA_DIR;
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.string());
    std::ifstream in(file);
    ASSERT_TRUE(in.good());
    std::string line;
    long lineNumber = 0, cases = 0, failures = 0;
    while (std::getline(in, line)) {
      ++lineNumber;
      if (line.empty() || line[0] == '#' || line.find_first_not_of(" \t\r") == std::string::npos)
        continue;
      ++cases;
      const std::string problem = CheckLine(line);
      if (!problem.empty() && ++failures <= 10)
        ADD_FAILURE() << "line " << lineNumber << ": " << problem;
    }
    EXPECT_EQ(failures, 0) << "of " << cases << " cases";
  }
}

} // namespace
