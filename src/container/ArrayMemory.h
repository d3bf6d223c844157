//===- container/ArrayMemory.h - C allocation for the arrays ----*- C++ -*-===//
//
// The growable arrays keep their elements in one block from the C runtime
// (malloc/realloc/free) so that Fortran code can be handed the block as it is.
// These helpers add the one check the runtime does not make: an element
// count whose byte size does not fit into size_t is refused instead of
// wrapping around to a small request.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_CONTAINER_ARRAYMEMORY_H
#define TARNUTILITIES_SRC_CONTAINER_ARRAYMEMORY_H

#include <cstdint>
#include <cstdlib>
#include <limits>

namespace ZEL_detail {

/// realloc of `block` to `count` elements of T; null if the byte size
/// overflows or the runtime refuses. `block` is left untouched on failure.
template <typename T> T* ReallocElements(T* block, std::uint64_t count) {
  if (count > std::numeric_limits<std::size_t>::max() / sizeof(T))
    return nullptr;
  return static_cast<T*>(std::realloc(block, static_cast<std::size_t>(count) * sizeof(T)));
}

/// malloc of `count` elements of T; null if the byte size overflows or the
/// runtime refuses.
template <typename T> T* MallocElements(std::uint64_t count) {
  if (count > std::numeric_limits<std::size_t>::max() / sizeof(T))
    return nullptr;
  return static_cast<T*>(std::malloc(static_cast<std::size_t>(count) * sizeof(T)));
}

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_CONTAINER_ARRAYMEMORY_H
