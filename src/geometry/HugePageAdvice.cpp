//===- HugePageAdvice.cpp - Huge-page advice for fresh memory ----------------===//
#include "geometry/HugePageAdvice.h"

#include <sys/mman.h>

#include <cstdint>

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

} // namespace ZEL_detail
