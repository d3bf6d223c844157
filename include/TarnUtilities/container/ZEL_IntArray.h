//===- TarnUtilities/container/ZEL_IntArray.h - Growable ints ---*- C++ -*-===//
//
// A growable array of 32-bit signed integers whose memory a Fortran or C
// caller can read directly. The structure has exactly three fields, in this
// order: size (uint64_t), capacity (uint64_t) and data (int*), 24 bytes in
// all, and its block comes from malloc/realloc/free only, so that the same
// block can be handed across the language boundary without copying.
//
// Growth: the capacity never drops below MINIMUM_SIZE (10) and grows by
// GROWTH_RATE (1.5, rounded up) when PushBack finds the block full:
//   0 -> 10 -> 15 -> 23 -> 35 -> 53 -> ...
//
// Example:
//   ZEL_IntArray a;            // size 0, capacity 0, data null
//   a.PushBack(3);             // size 1, capacity 10
//   a.Insert(99, 7);           // position clamped to the size: (3, 7)
//   a.Find(5) == a.Size()      // not found
//
// Element access is not checked (assertions check it in debug builds).
// Allocation failures throw ZEL_Failure.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_CONTAINER_ZEL_INTARRAY_H
#define TARNUTILITIES_CONTAINER_ZEL_INTARRAY_H

#include "TarnUtilities/Export.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <type_traits>
#include <vector>

struct TARN_API ZEL_IntArray {
  // The three fields are the whole object; their order and widths are
  // shared with Fortran and C callers. Do not add members.
  std::uint64_t size;     ///< elements in use
  std::uint64_t capacity; ///< elements the block has room for
  int* data;              ///< the block, null when nothing is allocated

  static constexpr double GROWTH_RATE = 1.5;
  static constexpr std::uint64_t MINIMUM_SIZE = 10;
  /// Live objects: raised by every successful constructor, lowered by the
  /// destructor. A plain counter, approximate when threads race.
  static std::uint64_t s_InstanceCounter;

  /// Empty: size 0, capacity 0, data null.
  ZEL_IntArray() noexcept;
  /// `count` zeros; the capacity is `count`, or 1 for a count of 0.
  explicit ZEL_IntArray(std::uint64_t count);
  /// The vector's elements in a block of the vector's capacity.
  explicit ZEL_IntArray(const std::vector<int>& values);
  ZEL_IntArray(std::initializer_list<int> values);
  /// A deep copy through Reserve: the capacity is at least MINIMUM_SIZE.
  ZEL_IntArray(const ZEL_IntArray& other);
  /// Takes the other's block; the other is left all zero.
  ZEL_IntArray(ZEL_IntArray&& other) noexcept;
  ZEL_IntArray& operator=(const ZEL_IntArray& other);
  /// Frees this block and takes the other's; self-assignment does nothing.
  ZEL_IntArray& operator=(ZEL_IntArray&& other) noexcept;
  /// Frees the block and zeroes all three fields.
  ~ZEL_IntArray();

  int& operator[](std::uint64_t index) {
    assert(index < size && "ZEL_IntArray index out of range");
    return data[index];
  }
  int operator[](std::uint64_t index) const {
    assert(index < size && "ZEL_IntArray index out of range");
    return data[index];
  }
  int* begin() { return data; }
  int* end() { return data + size; }
  const int* begin() const { return data; }
  const int* end() const { return data + size; }
  std::uint64_t Size() const { return size; }

  /// Makes room for `n` elements (at least MINIMUM_SIZE); never shrinks.
  /// New elements are not initialised. If the runtime refuses, the old block
  /// is freed, the array is left empty (all zero) and ZEL_Failure is thrown.
  void Reserve(std::uint64_t n);
  /// Reserve(n); elements added beyond the old size are zero.
  ///   (1, 2, 3).Resize(1) => (1), capacity unchanged
  ///   (1).Resize(3)       => (1, 0, 0)
  void Resize(std::uint64_t n);
  /// Appends a value, growing the block by GROWTH_RATE when it is full.
  void PushBack(int value) {
    if (size == capacity)
      Grow();
    data[size++] = value;
  }
  /// Stores `value` at `position`, moving the elements from there up by
  /// one. A position beyond the size appends.
  ///   (1, 2).Insert(0, 9)  => (9, 1, 2)
  ///   (1, 2).Insert(50, 9) => (1, 2, 9)
  void Insert(std::uint64_t position, int value);
  /// Replaces the contents by `count` elements copied from `values` (which
  /// may point into this array). A null pointer is accepted only with a
  /// count of 0; otherwise ZEL_Failure is thrown and nothing changes.
  void AssignRawDataCopy(const int* values, std::uint64_t count);

  /// Number of elements equal to value.
  std::uint64_t Count(int value) const;
  /// Index of the first element equal to value, or Size() if none is.
  std::uint64_t Find(int value) const;
  /// Sorts the elements in use ascending.
  void Sort();
  /// Sorts, then keeps one of each value: (3, 1, 3, 2, 1) => (1, 2, 3).
  /// Arrays of fewer than two elements are left as they are.
  void Unique();
  /// Frees the block: size 0, capacity 0, data null.
  void Deallocate();

  /// Equal sizes and equal elements in order; the capacity does not count.
  bool operator==(const ZEL_IntArray& other) const;
  bool operator!=(const ZEL_IntArray& other) const { return !(*this == other); }

private:
  // Called by PushBack when the block is full; kept out of line so that the
  // common path stays small enough to inline.
  void Grow();
};

static_assert(std::is_standard_layout<ZEL_IntArray>::value,
              "ZEL_IntArray is shared with C and Fortran and must keep a plain layout");
static_assert(sizeof(ZEL_IntArray) == 24, "ZEL_IntArray must be exactly three 8-byte fields");
static_assert(offsetof(ZEL_IntArray, size) == 0 && offsetof(ZEL_IntArray, capacity) == 8 &&
                  offsetof(ZEL_IntArray, data) == 16,
              "ZEL_IntArray fields must be size, capacity, data in this order");
static_assert(sizeof(int) == 4, "ZEL_IntArray holds 32-bit integers");

#endif // TARNUTILITIES_CONTAINER_ZEL_INTARRAY_H
