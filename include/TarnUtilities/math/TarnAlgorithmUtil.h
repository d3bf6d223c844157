//===- TarnUtilities/math/TarnAlgorithmUtil.h - Integer routines -*- C++ -*-===//
//
// Two integer routines: splitting a count into nearly equal runs, and an
// in-place radix sort of 32-bit integers. TarnAlgorithmUtil is a namespace of
// free functions (TarnAlgorithmUtil::GenerateUniformIntervals(...)).
//
// Example:
//   std::vector<size_t> b;
//   TarnAlgorithmUtil::GenerateUniformIntervals(10, 3, b);  // b = (0, 3, 7, 10)
//   int v[] = {5, 1, 4};
//   TarnAlgorithmUtil::radix_sort_ascending(v, 3);          // v = (1, 4, 5)
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_TARNALGORITHMUTIL_H
#define TARNUTILITIES_MATH_TARNALGORITHMUTIL_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <vector>

namespace TarnAlgorithmUtil {

/// Log header of the failures raised here.
inline constexpr const char* kHeader = "[%T|%n|%P|TarnUtilities|TarnAlgorithmUtil] ";

/// Splits `total` items into `parts` runs whose lengths differ by at most
/// one, spreading the left-over items evenly by error accumulation
/// (Bresenham). `bounds` gets parts + 1 entries; run i is
/// [bounds[i], bounds[i+1]), bounds[0] = 0 and bounds[parts] = total.
///   (10, 3) => (0, 3, 7, 10)      the one extra item goes to the middle run
///   (10, 4) => (0, 2, 5, 7, 10)
///   (2, 4)  => (0, 0, 1, 1, 2)
/// parts = 0 throws ZEL_Failure (there is no run to put the items in) and
/// leaves `bounds` as it was.
TARN_API void GenerateUniformIntervals(std::size_t total, std::size_t parts,
                                       std::vector<std::size_t>& bounds);

/// Sorts data[0..n) ascending in place. Without negative values this is a
/// most-significant-digit radix sort on bytes that permutes in place
/// (American flag sort) and finishes buckets of fewer than 65 elements by
/// insertion sort; with a negative value anywhere the array is sorted by
/// std::sort instead. n = 0 (data may then be null) does nothing.
TARN_API void radix_sort_ascending(int* data, std::size_t n);

} // namespace TarnAlgorithmUtil

#endif // TARNUTILITIES_MATH_TARNALGORITHMUTIL_H
