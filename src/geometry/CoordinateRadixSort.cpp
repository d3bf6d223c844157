//===- CoordinateRadixSort.cpp - Point indices by coordinate ----------------===//
#include "geometry/CoordinateRadixSort.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace ZEL_detail {

// Negative numbers have all bits flipped (so larger magnitudes come
// first), the others only the sign bit (so they come after the negatives).
std::uint64_t CoordinateKey(double coord) {
  if (coord != coord)
    return ~std::uint64_t(0); // any NaN: above +inf, whose key is 0xFFF0...0
  if (coord == 0.0)
    coord = 0.0; // -0.0 sorts with +0.0
  std::uint64_t bits;
  std::memcpy(&bits, &coord, sizeof bits);
  const std::uint64_t sign = std::uint64_t(1) << 63;
  return (bits & sign) ? ~bits : (bits | sign);
}

template <typename Index>
void RadixSortByCoordinate(const ZEL_SearchTree3D::TreePoint* points, std::size_t n, int axis,
                           Index* out, Index* work, std::uint64_t* keys, std::uint64_t* keysNext) {
  // Six digits of 11 bits (the last of 9) cover the 64-bit key; the 2^11
  // counters of a digit (16 KiB) fit the first-level data cache.
  constexpr int kDigitBits = 11;
  constexpr int kDigits = 6;
  constexpr std::size_t kBuckets = std::size_t(1) << kDigitBits;
  std::vector<std::array<std::size_t, kBuckets>> counts(kDigits);
  for (auto& c : counts)
    c.fill(0);
  for (std::size_t i = 0; i < n; ++i) {
    const ZEL_SearchTree3D::TreePoint& p = points[i];
    keys[i] = CoordinateKey(axis == 0 ? p.x : axis == 1 ? p.y : p.z);
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

template void RadixSortByCoordinate<std::uint32_t>(const ZEL_SearchTree3D::TreePoint*, std::size_t,
                                                   int, std::uint32_t*, std::uint32_t*,
                                                   std::uint64_t*, std::uint64_t*);
template void RadixSortByCoordinate<std::size_t>(const ZEL_SearchTree3D::TreePoint*, std::size_t,
                                                 int, std::size_t*, std::size_t*, std::uint64_t*,
                                                 std::uint64_t*);

} // namespace ZEL_detail
