//===- TarnUtilities/system/detail/LargeBuffer.h - Big buffers -*- C++ -*-===//
//
// An owned, uninitialised byte buffer. Buffers of 8 MiB and more are mapped
// directly and advised to use transparent huge pages: filling a fresh 200 MB
// buffer then costs a hundred page faults instead of fifty thousand, which
// is most of the time of reading a large file that is in the page cache.
// Smaller buffers come from operator new, and so does every buffer under
// AddressSanitizer or ThreadSanitizer. A buffer starts on a 64-byte
// boundary. An implementation detail of TextLinesParser and of the search
// tree's build, not part of the public interface.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SYSTEM_DETAIL_LARGEBUFFER_H
#define TARNUTILITIES_SYSTEM_DETAIL_LARGEBUFFER_H

#include "TarnUtilities/Export.h"

#include <cstddef>

namespace TarnSystemDetail {

class TARN_API LargeBuffer {
public:
  LargeBuffer() = default;
  /// Allocates `bytes` bytes (throws std::bad_alloc when memory is short).
  explicit LargeBuffer(std::size_t bytes);
  LargeBuffer(const LargeBuffer&) = delete;
  LargeBuffer& operator=(const LargeBuffer&) = delete;
  LargeBuffer(LargeBuffer&& other) noexcept { *this = static_cast<LargeBuffer&&>(other); }
  LargeBuffer& operator=(LargeBuffer&& other) noexcept;
  ~LargeBuffer() { Release(); }

  void* data() const { return data_; }
  std::size_t size() const { return size_; }
  explicit operator bool() const { return data_ != nullptr; }
  void Release();

private:
  void* data_ = nullptr;
  std::size_t size_ = 0;
  void* mapping_ = nullptr;       // start of the mapping, when mapped
  std::size_t mappingBytes_ = 0;  // its length
};

} // namespace TarnSystemDetail

#endif // TARNUTILITIES_SYSTEM_DETAIL_LARGEBUFFER_H
