//===- TarnAlgorithmUtil.cpp - Uniform intervals and radix sort -------------===//
//
// The radix sort is McIlroy, Bostic and McIlroy's American flag sort
// ("Engineering Radix Sort", 1993): count the byte of every element, then
// permute in place by following cycles, then recurse into each bucket on the
// next byte. Small buckets are cheaper to finish by insertion sort than by
// another counting pass over 256 buckets.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/TarnAlgorithmUtil.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"

#include <algorithm>
#include <cstdint>

namespace {

/// Buckets with fewer elements than this are finished by insertion sort.
constexpr std::size_t kInsertionSortBelow = 65;

/// Sorts a[0..n) by insertion.
void InsertionSort(int* a, std::size_t n) {
  for (std::size_t i = 1; i < n; ++i) {
    const int v = a[i];
    std::size_t j = i;
    for (; j > 0 && a[j - 1] > v; --j)
      a[j] = a[j - 1];
    a[j] = v;
  }
}

/// The byte of v at bit `shift` (v is non-negative).
inline unsigned Digit(int v, unsigned shift) {
  return (static_cast<std::uint32_t>(v) >> shift) & 0xFFu;
}

/// Sorts a[0..n) of non-negative values whose bytes above `shift` + 8 are
/// all equal: partitions by the byte at `shift`, then sorts each bucket on
/// the bytes below.
void FlagSort(int* a, std::size_t n, unsigned shift) {
  std::size_t next[256] = {};
  std::size_t end[256];
  for (std::size_t i = 0; i < n; ++i)
    ++next[Digit(a[i], shift)];
  std::size_t start = 0;
  for (unsigned b = 0; b < 256; ++b) {
    const std::size_t count = next[b];
    next[b] = start;
    start += count;
    end[b] = start;
  }

  // Cycle leader permutation: take the element at the next free slot of
  // bucket b and swap it into the bucket it belongs to until an element of
  // bucket b comes back; that one fills the slot.
  for (unsigned b = 0; b < 256; ++b) {
    while (next[b] < end[b]) {
      int v = a[next[b]];
      unsigned d = Digit(v, shift);
      while (d != b) {
        std::swap(v, a[next[d]++]);
        d = Digit(v, shift);
      }
      a[next[b]++] = v;
    }
  }

  if (shift == 0)
    return;
  std::size_t begin = 0;
  for (unsigned b = 0; b < 256; ++b) {
    const std::size_t count = end[b] - begin;
    if (count < kInsertionSortBelow)
      InsertionSort(a + begin, count);
    else
      FlagSort(a + begin, count, shift - 8);
    begin = end[b];
  }
}

} // namespace

namespace TarnAlgorithmUtil {

void GenerateUniformIntervals(std::size_t total, std::size_t parts,
                              std::vector<std::size_t>& bounds) {
  if (parts == 0)
    throw ZEL_Failure(ZEL_Code("140512210524"),
                      ZEL_MESSAGE("Cannot split %zu items into 0 intervals.", total), kHeader);
  const std::size_t q = total / parts;
  const std::size_t r = total % parts;
  bounds.resize(parts + 1);
  bounds[parts] = total;
  // err stays within [-parts, parts): r < parts and parts / 2 < parts.
  long long err = static_cast<long long>(parts / 2);
  std::size_t pos = 0;
  for (std::size_t i = 0; i < parts; ++i) {
    bounds[i] = pos;
    pos += q;
    err -= static_cast<long long>(r);
    if (err < 0) {
      pos += 1;
      err += static_cast<long long>(parts);
    }
  }
}

void radix_sort_ascending(int* data, std::size_t n) {
  if (n == 0)
    return;
  if (std::any_of(data, data + n, [](int v) { return v < 0; })) {
    std::sort(data, data + n);
    return;
  }
  // Most significant byte first: bits 24..31 (bit 31 is 0 here).
  FlagSort(data, n, 24);
}

} // namespace TarnAlgorithmUtil
