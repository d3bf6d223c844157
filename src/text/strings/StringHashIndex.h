//===- StringHashIndex.h - Hash index over a string table --------*- C++ -*-===//
//
// The look-up behind TarnStringsPool: an open-addressing table of 32-bit
// slots that finds the identifier of a string from its 32-bit hash. The
// index never sees the characters: callers pass the hash, a test of
// equality with a stored string, and (for growing) the hash of a stored
// string.
//
// A table of 2^k slots holds identifiers below 2^k, so a slot packs
//   [ tag: top 32-k bits | identifier: low k bits ]
// and 0 marks a free slot (identifier 0 names no string). The tag is a
// second hash of the hash: a probe passes over slots of other strings
// without reading their characters, except when the tags agree by chance
// (about once in 2^(32-k) slots). At most three quarters of the slots are in
// use, so a probe ends at a free slot after a few steps and every stored
// identifier (at most 3/4 of 2^k) fits its k bits.
//
// A slot is chosen by the top k bits of hash * 2654435769 (2^32 divided by
// the golden ratio, Fibonacci hashing), which spreads the djb2 values of
// similar strings, whose differences sit mostly in the low bits.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_STRINGS_STRINGHASHINDEX_H
#define TARNUTILITIES_SRC_TEXT_STRINGS_STRINGHASHINDEX_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace tarn_detail {

class StringHashIndex {
public:
  StringHashIndex();

  /// The identifier of the stored string with this hash for which
  /// equal(id) holds, or 0 when there is none. In that case `freeSlot` is
  /// where Insert puts the string.
  template <typename Equal>
  std::int32_t Find(std::uint32_t hash, Equal&& equal, std::size_t& freeSlot) const {
    const std::uint32_t tag = TagOf(hash);
    for (std::size_t slot = Home(hash);; slot = (slot + 1) & m_IdMask) {
      const std::uint32_t at = m_Slots[slot];
      if (at == 0) {
        freeSlot = slot;
        return 0;
      }
      if ((at & ~m_IdMask) == tag && equal(static_cast<std::int32_t>(at & m_IdMask)))
        return static_cast<std::int32_t>(at & m_IdMask);
    }
  }

  /// Stores id, the identifier of a string with this hash, in the free slot
  /// returned by the last Find, which no other change may have followed.
  /// id must be the number of strings indexed so far plus one. When the
  /// table must grow, hashOf(i) gives the hash of each stored identifier i.
  /// Throws std::bad_alloc, and changes nothing, when it cannot grow.
  void Insert(std::size_t freeSlot, std::uint32_t hash, std::int32_t id,
              const std::function<std::uint32_t(std::int32_t)>& hashOf);

  /// Number of identifiers indexed.
  std::size_t Size() const { return m_Size; }

private:
  std::size_t Home(std::uint32_t hash) const {
    return static_cast<std::uint32_t>(hash * 2654435769u) >> m_Shift;
  }
  /// The tag bits of a hash: the top 32-k bits of a second multiplicative
  /// hash (0x85EBCA6B, an odd constant of MurmurHash3's finaliser).
  std::uint32_t TagOf(std::uint32_t hash) const {
    return static_cast<std::uint32_t>(hash * 0x85EBCA6Bu) & ~m_IdMask;
  }
  /// Doubles the table and places every identifier anew.
  void Grow(const std::function<std::uint32_t(std::int32_t)>& hashOf);

  std::vector<std::uint32_t> m_Slots;
  std::uint32_t m_IdMask; ///< table size - 1: the identifier bits of a slot
  int m_Shift;            ///< 32 - log2(table size)
  std::size_t m_Size = 0;
};

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_TEXT_STRINGS_STRINGHASHINDEX_H
