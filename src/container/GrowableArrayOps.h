//===- container/GrowableArrayOps.h - Shared array operations ---*- C++ -*-===//
//
// The operations ZEL_IntArray and ZEL_DoubleArray perform alike, written once
// for any array of the shape both share: public fields `size`, `capacity`
// and `data` (a malloc'ed block of trivially copyable elements) and member
// functions Reserve(n) and PushBack(value). What differs between the arrays
// (minimum capacity, growth, what happens to the old block when growing
// fails, message texts) stays in each array and reaches these functions
// through Reserve or as arguments.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_CONTAINER_GROWABLEARRAYOPS_H
#define TARNUTILITIES_SRC_CONTAINER_GROWABLEARRAYOPS_H

#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "container/ArrayMemory.h"

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace ZEL_detail {

/// Moves `from`'s fields into `to` (whose own block must already be gone)
/// and leaves `from` all zero.
template <typename Array> void TakeBlock(Array& to, Array& from) noexcept {
  to.size = from.size;
  to.capacity = from.capacity;
  to.data = from.data;
  from.size = 0;
  from.capacity = 0;
  from.data = nullptr;
}

/// Frees the block and zeroes all three fields.
template <typename Array> void FreeBlock(Array& a) noexcept {
  std::free(a.data);
  a.data = nullptr;
  a.size = 0;
  a.capacity = 0;
}

/// Move assignment: frees `to`'s block and takes `from`'s; nothing happens
/// when both are the same object.
template <typename Array> void MoveAssign(Array& to, Array& from) noexcept {
  if (&to == &from)
    return;
  std::free(to.data);
  TakeBlock(to, from);
}

/// A block of `values.capacity()` elements holding the vector's elements,
/// or null if the runtime refuses. The capacity must not be 0.
template <typename T> T* MallocCopy(const std::vector<T>& values) {
  T* block = MallocElements<T>(values.capacity());
  if (block && !values.empty())
    std::memcpy(block, values.data(), values.size() * sizeof(T));
  return block;
}

/// Gives `a` a block of `n` elements when its block is smaller. True on
/// success. If the runtime refuses, the array is left empty (all zero) so
/// that nothing writes through a stale size or capacity, the old block is
/// freed only if `freeOldBlock`, and false is returned for the caller to
/// report.
template <typename Array> bool GrowBlockTo(Array& a, std::uint64_t n, bool freeOldBlock) {
  if (n <= a.capacity)
    return true;
  auto* grown = ReallocElements(a.data, n);
  if (!grown) {
    if (freeOldBlock)
      std::free(a.data);
    a.data = nullptr;
    a.size = 0;
    a.capacity = 0;
    return false;
  }
  a.data = grown;
  a.capacity = n;
  return true;
}

/// Reserve(n), then zeros for the elements beyond the old size.
template <typename Array> void ResizeZeroFilled(Array& a, std::uint64_t n) {
  a.Reserve(n);
  if (n > a.size)
    std::memset(a.data + a.size, 0, static_cast<std::size_t>(n - a.size) * sizeof(*a.data));
  a.size = n;
}

/// Stores `value` at `position` (clamped to the size), moving the elements
/// from there up by one.
template <typename Array, typename T> void InsertAt(Array& a, std::uint64_t position, T value) {
  if (position > a.size)
    position = a.size;
  a.PushBack(T());
  std::memmove(a.data + position + 1, a.data + position,
               static_cast<std::size_t>(a.size - 1 - position) * sizeof(T));
  a.data[position] = value;
}

/// Replaces `a`'s contents by `count` elements copied from `values`, which
/// may point into `a`'s own block. A count of 0 empties the array after
/// Reserve(0) (which gives an array with a minimum capacity its first
/// block); a null pointer with a positive count throws a user-error
/// ZEL_Failure naming `arrayName`, and nothing changes.
template <typename Array, typename T>
void AssignCopy(Array& a, const T* values, std::uint64_t count, const char* arrayName,
                const char* logHeader) {
  if (count == 0) {
    a.Reserve(0);
    a.size = 0;
    return;
  }
  if (!values)
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("%s::AssignRawDataCopy was given a null pointer for "
                                  "%" PRIu64 " elements",
                                  arrayName, count),
                      logHeader);
  // Remember the offset of `values` in case the block moves while it grows.
  const bool inside = a.data && values >= a.data && values < a.data + a.capacity;
  const std::size_t offset = inside ? static_cast<std::size_t>(values - a.data) : 0;
  a.Reserve(count);
  const T* source = inside ? a.data + offset : values;
  std::memmove(a.data, source, static_cast<std::size_t>(count) * sizeof(T));
  a.size = count;
}

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_CONTAINER_GROWABLEARRAYOPS_H
