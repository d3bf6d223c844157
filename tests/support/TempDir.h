//===- tests/support/TempDir.h - Scratch directories for tests -*- C++ -*-===//
//
// A fresh directory under $TMPDIR (or /tmp) that is removed with everything
// in it when the object goes out of scope.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TESTS_SUPPORT_TEMPDIR_H
#define TARNUTILITIES_TESTS_SUPPORT_TEMPDIR_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tarn_test {

class TempDir {
public:
  TempDir() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/tarn_test_XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("mkdtemp failed for " + pattern);
    path_ = pattern;
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
  std::string path_;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << content;
}

} // namespace tarn_test

#endif // TARNUTILITIES_TESTS_SUPPORT_TEMPDIR_H
