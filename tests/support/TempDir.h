//===- tests/support/TempDir.h - Scratch directories for tests -*- C++ -*-===//
//
// A fresh directory under $TMPDIR (or /tmp) that is removed with everything
// in it when the object goes out of scope (permissions are restored first so
// that read-only directories do not block removal), and the whole-file
// reading and writing the tests that touch the disk share.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TESTS_SUPPORT_TEMPDIR_H
#define TARNUTILITIES_TESTS_SUPPORT_TEMPDIR_H

#include "TarnUtilities/text/TarnStringUtil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace tarn_test {

/// UTF-8 text as UTF-16: Wide("a/b.csv") => u"a/b.csv".
inline std::u16string Wide(const std::string& utf8) { return TarnStringUtil::utf8_to_wide(utf8); }

class TempDir {
public:
  TempDir() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/tarn_test_XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("mkdtemp failed for " + pattern);
    path_ = pattern;
  }
  ~TempDir() {
    std::error_code ignored;
    for (auto it = std::filesystem::recursive_directory_iterator(path_, ignored);
         it != std::filesystem::recursive_directory_iterator(); it.increment(ignored))
      if (it->is_directory(ignored))
        ::chmod(it->path().c_str(), 0755);
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  /// The directory's absolute name, without trailing separator.
  const std::string& path() const { return path_; }
  /// path() + "/" + name.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  /// The same as a wide name.
  std::u16string Wide(const std::string& name) const { return tarn_test::Wide(*this / name); }

  /// Writes contents to name, creating the directories on the way, and
  /// returns the full path: Write("sub/a.par", "x") => path() + "/sub/a.par".
  std::string Write(const std::string& name, const std::string& contents) const;

private:
  std::string path_;
};

/// The whole file; empty if it cannot be read.
inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// Replaces the file's contents with bytes; a failed write fails the test.
inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << bytes;
  EXPECT_TRUE(out.good()) << path;
}

inline std::string TempDir::Write(const std::string& name, const std::string& contents) const {
  const std::filesystem::path full = *this / name;
  std::filesystem::create_directories(full.parent_path());
  WriteFile(full.string(), contents);
  return full.string();
}

} // namespace tarn_test

#endif // TARNUTILITIES_TESTS_SUPPORT_TEMPDIR_H
