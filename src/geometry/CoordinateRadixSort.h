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

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace ZEL_detail {

/// A key whose unsigned order is the order of the coordinates:
///   -inf < -1.0 < -0.0 == +0.0 < 1e-300 < +inf < every NaN
/// Negative numbers have all bits flipped (so larger magnitudes come
/// first), the others only the sign bit (so they come after the negatives).
inline std::uint64_t CoordinateKey(double coord) {
  if (coord != coord)
    return ~std::uint64_t(0); // any NaN: above +inf, whose key is 0xFFF0...0
  if (coord == 0.0)
    coord = 0.0; // -0.0 sorts with +0.0
  std::uint64_t bits;
  std::memcpy(&bits, &coord, sizeof bits);
  const std::uint64_t sign = std::uint64_t(1) << 63;
  return (bits & sign) ? ~bits : (bits | sign);
}

/// Writes to `out` the indices 0 ... n-1 ordered by `coordOf(index)` as
/// above. `work`, `keys` and `keysNext` are work space of n entries each;
/// `Index` must hold n - 1.
template <typename Index, typename CoordOf>
void RadixSortByCoordinate(std::size_t n, CoordOf coordOf, Index* out, Index* work,
                           std::uint64_t* keys, std::uint64_t* keysNext) {
  // Six digits of 11 bits (the last of 9) cover the 64-bit key; 2^11
  // counters per digit stay in the first-level caches.
  constexpr int kDigitBits = 11;
  constexpr int kDigits = 6;
  constexpr std::size_t kBuckets = std::size_t(1) << kDigitBits;
  std::vector<std::array<std::size_t, kBuckets>> counts(kDigits);
  for (auto& c : counts)
    c.fill(0);
  for (std::size_t i = 0; i < n; ++i) {
    keys[i] = CoordinateKey(coordOf(i));
    out[i] = static_cast<Index>(i);
    for (int d = 0; d < kDigits; ++d)
      ++counts[d][(keys[i] >> (d * kDigitBits)) & (kBuckets - 1)];
  }
  Index* from = out;
  Index* to = work;
  for (int d = 0; d < kDigits; ++d) {
    std::array<std::size_t, kBuckets>& count = counts[d];
    // A digit that all keys share leaves the order as it is.
    const int shift = d * kDigitBits;
    if (n == 0 || count[(keys[0] >> shift) & (kBuckets - 1)] == n)
      continue;
    std::size_t position = 0;
    for (std::size_t& c : count) {
      const std::size_t here = c;
      c = position;
      position += here;
    }
    for (std::size_t i = 0; i < n; ++i) {
      const std::size_t slot = count[(keys[i] >> shift) & (kBuckets - 1)]++;
      keysNext[slot] = keys[i];
      to[slot] = from[i];
    }
    std::swap(keys, keysNext);
    std::swap(from, to);
  }
  if (from != out)
    std::copy(from, from + n, out);
}

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_GEOMETRY_COORDINATERADIXSORT_H
