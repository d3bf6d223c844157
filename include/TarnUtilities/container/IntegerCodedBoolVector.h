//===- TarnUtilities/container/IntegerCodedBoolVector.h - 32 flags -*- C++ -*-===//
//
// Thirty-two Boolean flags coded in one 32-bit integer: flag i is bit i
// (bit 0 the lowest, flag 31 the sign bit). Fortran code keeps such codes
// in plain integers and converts them to and from arrays of 32 flags, one
// 32-bit integer each (1 set, 0 clear; any value other than 0 reads as set,
// so Fortran logicals of either convention, 1 or -1, work).
//
// Example:
//   IntegerCodedBoolVector v(5);   // flags 0 and 2 set
//   v.Get(2)        => true
//   v.Set(31, true);
//   v.ToInt()       => INT32_MIN + 5
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_CONTAINER_INTEGERCODEDBOOLVECTOR_H
#define TARNUTILITIES_CONTAINER_INTEGERCODEDBOOLVECTOR_H

#include "TarnUtilities/Export.h"

#include <cstdint>

class TARN_API IntegerCodedBoolVector {
public:
  /// The number of flags: the bits of a 32-bit integer.
  static constexpr int NUM_FLAGS = 32;

  /// All flags clear.
  IntegerCodedBoolVector() = default;
  /// The flags of `code`.
  explicit IntegerCodedBoolVector(std::int32_t code) : bits_(static_cast<std::uint32_t>(code)) {}

  /// Flag `index` (0 to 31); ZEL_Failure for any other index.
  bool Get(int index) const;
  void Set(int index, bool value);
  /// The number of flags set.
  int Count() const;

  /// The flags as their integer code.
  std::int32_t ToInt() const { return static_cast<std::int32_t>(bits_); }
  /// flags[i] = 1 if flag i is set, else 0, for the NUM_FLAGS entries.
  void ToArray(std::int32_t* flags) const;
  /// The flags of an array of NUM_FLAGS entries: flag i is set where flags[i] != 0.
  static IntegerCodedBoolVector FromArray(const std::int32_t* flags);

private:
  std::uint32_t bits_ = 0;
};

#endif // TARNUTILITIES_CONTAINER_INTEGERCODEDBOOLVECTOR_H
