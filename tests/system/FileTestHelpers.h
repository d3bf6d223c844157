//===- tests/system/FileTestHelpers.h - File-system helpers -*- C++ -*-===//
//
// What the file-system tests share besides their scratch directories:
// running a check as an ordinary user (also when the tests run as root),
// changing the current directory for a scope, and capturing log lines.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TESTS_SYSTEM_FILETESTHELPERS_H
#define TARNUTILITIES_TESTS_SYSTEM_FILETESTHELPERS_H

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarn_test {

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

#endif // TARNUTILITIES_TESTS_SYSTEM_FILETESTHELPERS_H
