//===- TarnUtilities/container/ZEL_DoubleArray.h - Growable doubles -*- C++ -*-===//
//
// A growable array of doubles whose memory a Fortran or C caller can read
// directly: exactly three fields, size (uint64_t), capacity (uint64_t) and
// data (double*), 24 bytes, with the block from malloc/realloc/free only.
//
// Unlike ZEL_IntArray there is no minimum capacity; PushBack grows a full
// block by GROWTH_RATE (1.5, rounded up), and to at least one element:
//   0 -> 1 -> 2 -> 3 -> 5 -> 8 -> 12 -> 18 -> ...
//
// Example:
//   ZEL_DoubleArray a;   // size 0, capacity 0, data null
//   a.Reserve(3);        // capacity 3
//   a.Resize(2);         // (0.0, 0.0)
//   a.Insert(1, 2.5);    // (0.0, 2.5, 0.0)
//
// Element access is not checked (assertions check it in debug builds).
// Allocation failures throw ZEL_Failure.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_CONTAINER_ZEL_DOUBLEARRAY_H
#define TARNUTILITIES_CONTAINER_ZEL_DOUBLEARRAY_H

#include "TarnUtilities/Export.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

struct TARN_API ZEL_DoubleArray {
  // The three fields are the whole object; their order and widths are
  // shared with Fortran and C callers. Do not add members.
  std::uint64_t size;     ///< elements in use
  std::uint64_t capacity; ///< elements the block has room for
  double* data;           ///< the block, null when nothing is allocated

  static constexpr double GROWTH_RATE = 1.5;
  /// Live objects: raised by every successful constructor, lowered by the
  /// destructor. A plain counter, approximate when threads race.
  static std::uint64_t s_InstanceCounter;

  /// Empty: size 0, capacity 0, data null.
  ZEL_DoubleArray() noexcept;
  /// The vector's elements in a block of the vector's capacity.
  explicit ZEL_DoubleArray(const std::vector<double>& values);
  /// A deep copy in a block of exactly the other's size.
  ZEL_DoubleArray(const ZEL_DoubleArray& other);
  /// Takes the other's block; the other is left all zero.
  ZEL_DoubleArray(ZEL_DoubleArray&& other) noexcept;
  ZEL_DoubleArray& operator=(const ZEL_DoubleArray& other);
  /// Frees this block and takes the other's; self-assignment does nothing.
  ZEL_DoubleArray& operator=(ZEL_DoubleArray&& other) noexcept;
  /// Frees the block and zeroes all three fields.
  ~ZEL_DoubleArray();

  double& operator[](std::uint64_t index) {
    assert(index < size && "ZEL_DoubleArray index out of range");
    return data[index];
  }
  double operator[](std::uint64_t index) const {
    assert(index < size && "ZEL_DoubleArray index out of range");
    return data[index];
  }

  /// Makes room for `n` elements; never shrinks. New elements are not
  /// initialised. If the runtime refuses, the array lets go of its block
  /// without freeing it (a caller that kept `data` may still read it and
  /// must free it), is left empty (all zero) and ZEL_Failure is thrown.
  void Reserve(std::uint64_t n);
  /// Reserve(n); elements added beyond the old size are zero.
  void Resize(std::uint64_t n);
  /// Appends a value, growing the block by GROWTH_RATE when it is full.
  void PushBack(double value) {
    if (size == capacity)
      Grow();
    data[size++] = value;
  }
  /// Stores `value` at `position`, moving the elements from there up by
  /// one. A position beyond the size appends.
  void Insert(std::uint64_t position, double value);
  /// Replaces the contents by `count` elements copied from `values` (which
  /// may point into this array). A null pointer is accepted only with a
  /// count of 0; otherwise ZEL_Failure is thrown and nothing changes.
  void AssignRawDataCopy(const double* values, std::uint64_t count);

private:
  // Called by PushBack when the block is full; kept out of line so that the
  // common path stays small enough to inline.
  void Grow();
};

static_assert(std::is_standard_layout<ZEL_DoubleArray>::value,
              "ZEL_DoubleArray is shared with C and Fortran and must keep a plain layout");
static_assert(sizeof(ZEL_DoubleArray) == 24, "ZEL_DoubleArray must be exactly three 8-byte fields");
static_assert(offsetof(ZEL_DoubleArray, size) == 0 && offsetof(ZEL_DoubleArray, capacity) == 8 &&
                  offsetof(ZEL_DoubleArray, data) == 16,
              "ZEL_DoubleArray fields must be size, capacity, data in this order");

#endif // TARNUTILITIES_CONTAINER_ZEL_DOUBLEARRAY_H
