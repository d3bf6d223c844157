//===- TarnFileUtil_Copy.cpp - Copying files and the same-file test ---------===//
//
// Two names denote one file when they reach the same device and inode; this
// is asked of the system directly, so the test renames nothing, creates no
// temporary file and is safe for concurrent use. FileCopy asks again on the
// opened descriptors before it truncates the target, so that no spelling of
// a name (relative and absolute, "..", links) can make a copy truncate its
// own source.
//
// The bytes are moved by the kernel (copy_file_range) where the file system
// allows it, otherwise read and written in blocks of 1 MiB.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "system/SystemName.h"

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using TarnSystemName::FromWide;
using TarnSystemName::Name;

namespace {

// 1 MiB: the block size of the read/write copy.
constexpr std::size_t kCopyBlockBytes = 1048576;
// The most bytes asked of one copy_file_range call (1 GiB, well below the
// kernel's per-call limit of 2 GiB - 4 KiB).
constexpr std::size_t kKernelCopyBytes = std::size_t(1) << 30;

bool SameInode(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Closes a descriptor when it goes out of scope.
class Descriptor {
public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0)
      ::close(fd_);
  }
  int get() const { return fd_; }
  // Closes now and reports whether the close succeeded (a write error can
  // surface only here on some file systems).
  bool Close() {
    const int fd = fd_;
    fd_ = -1;
    return ::close(fd) == 0;
  }

private:
  int fd_;
};

// Writes all n bytes; false on an error of the system.
bool WriteAll(int fd, const char* data, std::size_t n) {
  while (n > 0) {
    const ssize_t written = ::write(fd, data, n);
    if (written < 0) {
      if (errno == EINTR)
        continue;
      return false;
    }
    data += written;
    n -= static_cast<std::size_t>(written);
  }
  return true;
}

bool CopyByBlocks(int in, int out) {
  std::unique_ptr<char[]> block(new char[kCopyBlockBytes]);
  for (;;) {
    const ssize_t got = ::read(in, block.get(), kCopyBlockBytes);
    if (got < 0) {
      if (errno == EINTR)
        continue;
      return false;
    }
    if (got == 0)
      return true;
    if (!WriteAll(out, block.get(), static_cast<std::size_t>(got)))
      return false;
  }
}

// Copies from the current offsets to the end of in. Falls back to blocks
// when the kernel cannot copy between these two files at all, and for files
// that report no size (those of /proc and /sys), for which copy_file_range
// would copy nothing.
bool CopyContents(int in, const struct stat& inInfo, int out) {
  if (!S_ISREG(inInfo.st_mode) || inInfo.st_size == 0)
    return CopyByBlocks(in, out);
  bool kernelCopied = false;
  for (;;) {
    const ssize_t copied = ::copy_file_range(in, nullptr, out, nullptr, kKernelCopyBytes, 0);
    if (copied > 0) {
      kernelCopied = true;
      continue;
    }
    if (copied == 0)
      return true;
    if (errno == EINTR)
      continue;
    const bool unsupported = errno == EXDEV || errno == EINVAL || errno == ENOSYS ||
                             errno == EOPNOTSUPP || errno == EBADF;
    if (kernelCopied || !unsupported)
      return false;
    return CopyByBlocks(in, out);
  }
}

void LogSameFile(const Name& source, const Name& target) {
  ZEL_LOG_ERROR(TarnFileUtil::LOG_HEADER,
                ZEL_MESSAGE("Failed to perform a file-copy operation!\nSource file \"%s\" and "
                            "target file \"%s\" refer to\nthe same file on disk.",
                            source.c_str(), target.c_str())
                    .c_str());
}

} // namespace

bool TarnFileUtil::IsSameOneFile(const std::u16string& a, const std::u16string& b) {
  const Name first = FromWide(a);
  const Name second = FromWide(b);
  if (!first.valid || ::access(first.c_str(), F_OK) != 0)
    return false;
  if (a == b)
    return true;
  struct stat infoA {};
  struct stat infoB {};
  return second.valid && ::stat(first.c_str(), &infoA) == 0 &&
         ::stat(second.c_str(), &infoB) == 0 && SameInode(infoA, infoB);
}

bool TarnFileUtil::FileCopy(const std::u16string& source, const std::u16string& target) {
  const Name from = FromWide(source);
  const Name to = FromWide(target);
  if (!from.valid || !to.valid || ::access(from.c_str(), F_OK) != 0)
    return false;
  if (IsSameOneFile(source, target)) {
    LogSameFile(from, to);
    return false;
  }
  Descriptor in(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat inInfo {};
  if (in.get() < 0 || ::fstat(in.get(), &inInfo) != 0 || S_ISDIR(inInfo.st_mode))
    return false;
  // Opened without truncation: the target is emptied only once it is known
  // not to be the source (a link or rename may have made it so meanwhile).
  Descriptor out(::open(to.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  struct stat outInfo {};
  if (out.get() < 0 || ::fstat(out.get(), &outInfo) != 0)
    return false;
  if (SameInode(inInfo, outInfo)) {
    LogSameFile(from, to);
    return false;
  }
  if (S_ISREG(outInfo.st_mode) && ::ftruncate(out.get(), 0) != 0)
    return false;
  const bool copied = CopyContents(in.get(), inInfo, out.get());
  return out.Close() && copied;
}
