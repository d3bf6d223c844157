//===- geometry/CoordinateRadixSort.h - Point indices by coordinate -*- C++ -*-===//
//
// Sorts the point indices 0 ... n-1 by one coordinate in the search tree's
// order on an axis: ascending coordinate, -0.0 equal to +0.0, every NaN
// after every number, equal coordinates by ascending index. A least-
// significant-digit radix sort on a 64-bit key that orders like the
// coordinate; being stable and starting from the indices in ascending order,
// it leaves equal keys in index order. Linear in n, which matters for the
// million-point clouds the tree is built over.
//
// Not part of the public interface.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_GEOMETRY_COORDINATERADIXSORT_H
#define TARNUTILITIES_SRC_GEOMETRY_COORDINATERADIXSORT_H

#include "TarnUtilities/geometry/ZEL_SearchTree3D.h"

#include <cstddef>
#include <cstdint>

namespace ZEL_detail {

/// A key whose unsigned order is the order of the coordinates:
///   -inf < -1.0 < -0.0 == +0.0 < 1e-300 < +inf < every NaN
std::uint64_t CoordinateKey(double coord);

/// Writes to `out` the indices 0 ... n-1 of `points` ordered by their
/// coordinate on `axis` as above. `work`, `keys` and `keysNext` are work
/// space of n entries each; `Index` (uint32_t or size_t) must hold n - 1.
template <typename Index>
void RadixSortByCoordinate(const ZEL_SearchTree3D::TreePoint* points, std::size_t n, int axis,
                           Index* out, Index* work, std::uint64_t* keys, std::uint64_t* keysNext);

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_GEOMETRY_COORDINATERADIXSORT_H
