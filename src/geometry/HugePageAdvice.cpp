//===- HugePageAdvice.cpp - Large work blocks in 2 MiB pages ----------------===//
#include "geometry/HugePageAdvice.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

// GCC defines __SANITIZE_ADDRESS__ / __SANITIZE_THREAD__; Clang answers
// __has_feature.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TARN_WORKBLOCK_FROM_NEW 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TARN_WORKBLOCK_FROM_NEW 1
#endif
#endif

namespace ZEL_detail {

namespace {
constexpr std::uintptr_t kHugePage = std::uintptr_t(2) << 20; // 2 MiB on x86-64
} // namespace

void AdviseHugePages(void* begin, std::size_t bytes) noexcept {
  const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(begin);
  const std::uintptr_t first = (start + kHugePage - 1) & ~(kHugePage - 1);
  const std::uintptr_t last = (start + bytes) & ~(kHugePage - 1);
  // madvise fails harmlessly where huge pages are not available; the
  // memory then stays in ordinary pages.
  if (first < last)
    madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

#ifdef TARN_WORKBLOCK_FROM_NEW

WorkBlock::WorkBlock(std::size_t bytes)
    : data_(::operator new(bytes == 0 ? 1 : bytes, std::align_val_t(64))) {}

WorkBlock::~WorkBlock() { ::operator delete(data_, std::align_val_t(64)); }

#else

WorkBlock::WorkBlock(std::size_t bytes) {
  // One huge page more than asked, so that the block can start on a huge
  // page boundary; the kernel hands out only the pages that are written.
  const std::size_t rounded = (bytes + kHugePage - 1) & ~(kHugePage - 1);
  if (rounded < bytes || rounded + kHugePage < rounded)
    throw std::bad_alloc();
  mappingBytes_ = rounded + kHugePage;
  mapping_ =
      mmap(nullptr, mappingBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapping_ == MAP_FAILED)
    throw std::bad_alloc();
  const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(mapping_);
  data_ = reinterpret_cast<void*>((start + kHugePage - 1) & ~(kHugePage - 1));
  AdviseHugePages(data_, rounded);
}

WorkBlock::~WorkBlock() { munmap(mapping_, mappingBytes_); }

#endif

} // namespace ZEL_detail
