//===- tests/system/FileTestHelpers.h - File-system helpers -*- C++ -*-===//
//
// What the file-system tests share besides their scratch directories:
// running a check as an ordinary user, changing the current directory for a
// scope, and capturing log lines (they go to stderr until a log file is set).
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

/// check() with the permissions of an ordinary user: directly when this
/// process is one; as root (whom permission bits do not stop), in a child
/// process changed to the user "nobody" (65534). The directories check()
/// uses must be open to that user (OpenToEveryone).
inline bool RunUnprivileged(const std::function<bool()>& check) {
  if (::geteuid() != 0)
    return check();
  const pid_t child = ::fork();
  if (child == 0)
    ::_exit(::setgid(65534) != 0 || ::setuid(65534) != 0 ? 2 : check() ? 0 : 1);
  int status = 0;
  return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

inline void OpenToEveryone(const TempDir& dir) { ::chmod(dir.path().c_str(), 0777); }

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
