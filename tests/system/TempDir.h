//===- tests/system/TempDir.h - Scratch directories for tests --*- C++ -*-===//
//
// A fresh directory under /tmp (mkdtemp) for each test that touches the
// disk, removed with everything in it at the end of the test (permissions
// are restored first so that read-only directories do not block removal).
// Also the helpers the file-system tests share: writing and reading whole
// files, running as root, and capturing log lines.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TESTS_SYSTEM_TEMPDIR_H
#define TARNUTILITIES_TESTS_SYSTEM_TEMPDIR_H

#include "TarnUtilities/text/TarnStringUtil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarn_test {

class TempDir {
public:
  TempDir() {
    char pattern[] = "/tmp/tarn_files_XXXXXX";
    const char* made = ::mkdtemp(pattern);
    EXPECT_NE(made, nullptr);
    path_ = made ? made : "";
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir() {
    std::error_code ignored;
    for (auto it = std::filesystem::recursive_directory_iterator(path_, ignored);
         it != std::filesystem::recursive_directory_iterator(); it.increment(ignored))
      if (it->is_directory(ignored))
        ::chmod(it->path().c_str(), 0755);
    std::filesystem::remove_all(path_, ignored);
  }

  /// The directory's absolute name, without trailing separator.
  const std::string& path() const { return path_; }
  /// dir + "/" + name.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  /// The same as a wide name.
  std::u16string Wide(const std::string& name) const {
    return TarnStringUtil::utf8_to_wide(*this / name);
  }

private:
  std::string path_;
};

inline void WriteFile(const std::string& name, const std::string& bytes) {
  std::ofstream out(name, std::ios::binary);
  out << bytes;
  EXPECT_TRUE(out.good()) << name;
}

inline std::string ReadFile(const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// Runs check() with the permissions of an ordinary user and returns its
/// result: directly when this process is one; as root, in a child process
/// that has changed to the user "nobody" (65534), because permission bits do
/// not stop root. The directories check() uses must be open to that user
/// (see OpenToEveryone). False if the child could not change its user.
inline bool RunUnprivileged(const std::function<bool()>& check) {
  if (::geteuid() != 0)
    return check();
  const pid_t child = ::fork();
  if (child == 0) {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0)
      ::_exit(2);
    ::_exit(check() ? 0 : 1);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child)
    return false;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Lets every user enter and change the directory.
inline void OpenToEveryone(const TempDir& dir) { ::chmod(dir.path().c_str(), 0777); }

/// Changes the current directory for the life of the object.
class ScopedCwd {
public:
  explicit ScopedCwd(const std::string& dir) : old_(std::filesystem::current_path()) {
    std::filesystem::current_path(dir);
  }
  ~ScopedCwd() {
    std::error_code ignored;
    std::filesystem::current_path(old_, ignored);
  }

private:
  std::filesystem::path old_;
};

/// Log lines written while the object lives (logging goes to stderr until the
/// program configures a log file).
class CapturedLog {
public:
  CapturedLog() { testing::internal::CaptureStderr(); }
  ~CapturedLog() {
    if (!taken_)
      testing::internal::GetCapturedStderr();
  }
  std::string Take() {
    taken_ = true;
    return testing::internal::GetCapturedStderr();
  }

private:
  bool taken_ = false;
};

} // namespace tarn_test

#endif // TARNUTILITIES_TESTS_SYSTEM_TEMPDIR_H
