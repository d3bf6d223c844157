//===- tool/Progress.h - Progress of long work on a terminal ----*- C++ -*-===//
//
// Shows how far a long piece of work has come, as a percentage rewritten in
// place on standard error, but only when standard error is a terminal and
// the work is large (an input file over kLargeInputBytes): small inputs and
// redirected output stay free of progress lines.
//
// Example:
//   Progress progress("reading points.csv", fileBytes);
//   while (...) progress.Update(bytesReadSoFar);
//   progress.Finish();
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTIL_PROGRESS_H
#define TARNUTIL_PROGRESS_H

#include <cstdint>
#include <string>

namespace tarnutil {

class Progress {
public:
  /// Inputs above 100 MB (10^8 bytes) take long enough that a user waits
  /// for them; below that the work is over before progress could be read.
  static constexpr std::uint64_t kLargeInputBytes = 100000000;

  /// Progress over `total` units of work, shown when standard error is a
  /// terminal and `inputBytes` exceeds kLargeInputBytes.
  Progress(std::string label, std::uint64_t total, std::uint64_t inputBytes);
  /// The same where the work is reading `total` bytes.
  Progress(std::string label, std::uint64_t totalBytes)
      : Progress(std::move(label), totalBytes, totalBytes) {}
  ~Progress() { Finish(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Records that `done` units are done; redraws when the percentage moved.
  void Update(std::uint64_t done);
  /// Ends the progress line (once).
  void Finish();

  bool Shown() const { return shown_; }

private:
  std::string label_;
  std::uint64_t total_;
  bool shown_;
  int lastPercent_ = -1;
};

} // namespace tarnutil

#endif // TARNUTIL_PROGRESS_H
