//===- LargeBuffer.cpp - Buffers backed by huge pages -----------------------===//
#include "TarnUtilities/system/detail/LargeBuffer.h"

#include <cstdint>
#include <new>
#include <sys/mman.h>

// GCC defines __SANITIZE_ADDRESS__ / __SANITIZE_THREAD__; Clang answers
// __has_feature. Under those sanitizers every buffer comes from operator new,
// so that they see each access to it.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TARN_LARGEBUFFER_FROM_NEW 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TARN_LARGEBUFFER_FROM_NEW 1
#endif
#endif

namespace {

#ifdef TARN_LARGEBUFFER_FROM_NEW
constexpr bool kMapLargeBuffers = false;
#else
constexpr bool kMapLargeBuffers = true;
#endif
// Every buffer starts on a cache line.
constexpr std::align_val_t kAlignment{64};
// Buffers from this size on are mapped with huge pages.
constexpr std::size_t kMapThreshold = std::size_t(8) << 20;
// The size of a transparent huge page on x86-64 (2 MiB); mappings are
// aligned to it so that every page of the buffer can be a huge one.
constexpr std::size_t kHugePage = std::size_t(2) << 20;

} // namespace

namespace TarnSystemDetail {

LargeBuffer::LargeBuffer(std::size_t bytes) : size_(bytes) {
  if (!kMapLargeBuffers || bytes < kMapThreshold) {
    data_ = ::operator new(bytes == 0 ? 1 : bytes, kAlignment);
    return;
  }
  if (bytes > SIZE_MAX - 2 * kHugePage)
    throw std::bad_alloc();
  mappingBytes_ = bytes + kHugePage;
  mapping_ = ::mmap(nullptr, mappingBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS,
                    -1, 0);
  if (mapping_ == MAP_FAILED) {
    mapping_ = nullptr;
    throw std::bad_alloc();
  }
  const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(mapping_);
  const std::uintptr_t aligned = (start + kHugePage - 1) & ~std::uintptr_t(kHugePage - 1);
  data_ = reinterpret_cast<void*>(aligned);
  // Only advice: without huge pages the buffer works the same, more slowly.
  ::madvise(data_, bytes, MADV_HUGEPAGE);
}

LargeBuffer& LargeBuffer::operator=(LargeBuffer&& other) noexcept {
  if (this != &other) {
    Release();
    data_ = other.data_;
    size_ = other.size_;
    mapping_ = other.mapping_;
    mappingBytes_ = other.mappingBytes_;
    other.data_ = other.mapping_ = nullptr;
    other.size_ = other.mappingBytes_ = 0;
  }
  return *this;
}

void LargeBuffer::Release() {
  if (mapping_ != nullptr)
    ::munmap(mapping_, mappingBytes_);
  else if (data_ != nullptr)
    ::operator delete(data_, kAlignment);
  data_ = mapping_ = nullptr;
  size_ = mappingBytes_ = 0;
}

} // namespace TarnSystemDetail
