//===- tool/Progress.cpp - Progress of long work on a terminal ---------------===//
//
// Writes "\r<label>: <p>%" to standard error whenever the whole percentage
// changes, so a file of many gigabytes costs at most a hundred writes.
//
//===----------------------------------------------------------------------===//
#include "Progress.h"

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace tarnutil {

Progress::Progress(std::string label, std::uint64_t total, std::uint64_t inputBytes)
    : label_(std::move(label)), total_(total),
      shown_(inputBytes > kLargeInputBytes && isatty(STDERR_FILENO) == 1) {}

void Progress::Update(std::uint64_t done) {
  if (!shown_ || total_ == 0)
    return;
  const int percent = static_cast<int>(done >= total_ ? 100 : done * 100 / total_);
  if (percent == lastPercent_)
    return;
  lastPercent_ = percent;
  std::fprintf(stderr, "\r%s: %3d%%", label_.c_str(), percent);
  std::fflush(stderr);
}

void Progress::Finish() {
  if (!shown_)
    return;
  Update(total_);
  std::fputc('\n', stderr);
  shown_ = false;
}

} // namespace tarnutil
