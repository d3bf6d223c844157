//===- BufferedStream.cpp - Writing streams with a large buffer -------------===//
#include "system/BufferedStream.h"
#include "TarnUtilities/system/TarnFileUtil.h"

#include <cerrno>
#include <cstring>

namespace {
// Large enough that a table of long lines or many small numbers costs few
// system calls.
constexpr std::size_t kStreamBuffer = 1 << 16;
} // namespace

std::FILE* TarnBufferedStream::Open(const std::u16string& name, const char16_t* mode,
                                    std::string& error) {
  errno = 0;
  std::FILE* file = TarnFileUtil::wfopen(name, mode);
  if (!file) {
    error = std::strerror(errno != 0 ? errno : EIO);
    return nullptr;
  }
  std::setvbuf(file, nullptr, _IOFBF, kStreamBuffer);
  error.clear();
  return file;
}
