//===- HashRadixTable.h - Radix table over 32-bit hash values ----*- C++ -*-===//
//
// Maps a 32-bit hash value to one signed 64-bit entry (a bucket index for
// TarnStringsPool) through a radix tree of byte levels. Keys fall into four
// classes by their highest set bit, and each class has a root of its own:
//
//   class  leading zero bits  highest set bit  levels (bytes used, top first)
//     0          0..7             24..31        4    (3, 2, 1, 0)
//     1          8..15            16..23        3    (2, 1, 0)
//     2         16..23             8..15        2    (1, 0)
//     3         24..32             none..7      1    (0)
//
// so a small key costs fewer steps. Every node is a block of 256 entries,
// one per byte value, and all blocks lie one after the other in one growing
// array; a block is named by the position of its first entry. An entry of
// -1 is empty; an inner entry holds the start of its child block, and the
// entry chosen by byte 0 holds the value stored for the key.
//
// What it leaves out: removal. Blocks are never freed before the table is.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_STRINGS_HASHRADIXTABLE_H
#define TARNUTILITIES_SRC_TEXT_STRINGS_HASHRADIXTABLE_H

#include <cstddef>
#include <cstdint>

namespace tarn_detail {

class HashRadixTable {
public:
  /// The value of an empty entry, and what Find returns for an absent key.
  static constexpr std::int64_t kEmpty = -1;
  /// Entries per block: one per value of a byte.
  static constexpr std::size_t kBlockEntries = 256;
  /// Number of key classes, one per possible count of byte levels.
  static constexpr int kNumClasses = 4;

  HashRadixTable();
  HashRadixTable(const HashRadixTable& other);
  HashRadixTable& operator=(const HashRadixTable&) = delete;
  ~HashRadixTable();

  /// The class of a key: 0 for keys of four bytes ... 3 for keys below 256.
  ///   0x12345678 => 0,  0x1505 => 2,  0 => 3
  static int ClassOf(std::uint32_t key) {
    return key == 0 ? kNumClasses - 1 : __builtin_clz(key) / 8;
  }
  /// The shift of the top byte level of a class: 24 for class 0 ... 0 for 3.
  static int TopShift(int keyClass) { return 8 * (kNumClasses - 1 - keyClass); }

  /// The entry stored for key, or kEmpty when there is none.
  std::int64_t Find(std::uint32_t key) const {
    const int keyClass = ClassOf(key);
    std::int64_t node = m_Roots[keyClass];
    for (int shift = TopShift(keyClass);; shift -= 8) {
      if (node < 0)
        return kEmpty;
      node = m_Nodes[node + ((key >> shift) & 0xFF)];
      if (shift == 0)
        return node;
    }
  }

  /// The final entry of key, creating the missing blocks on its path (their
  /// entries empty). The reference is valid until the next Insert.
  std::int64_t& Insert(std::uint32_t key);

  /// Calls visit(key, entry) for every non-empty final entry: class by class
  /// from 0 to 3, and within a class by increasing key.
  template <typename Visit> void ForEachInOrder(Visit&& visit) const {
    for (int keyClass = 0; keyClass < kNumClasses; ++keyClass)
      if (m_Roots[keyClass] >= 0)
        Walk(m_Roots[keyClass], TopShift(keyClass), 0, visit);
  }

  /// Number of blocks allocated.
  std::size_t NumBlocks() const { return m_Size / kBlockEntries; }

private:
  /// Appends a block of empty entries and returns its start.
  std::int64_t NewBlock();

  template <typename Visit>
  void Walk(std::int64_t block, int shift, std::uint32_t prefix, Visit& visit) const {
    for (std::uint32_t byte = 0; byte < kBlockEntries; ++byte) {
      const std::int64_t entry = m_Nodes[block + byte];
      if (entry < 0)
        continue;
      const std::uint32_t key = prefix | (byte << shift);
      if (shift == 0)
        visit(key, entry);
      else
        Walk(entry, shift - 8, key, visit);
    }
  }

  // The block array is grown with realloc: large blocks of memory are then
  // remapped rather than copied, and the old and the new array never need
  // to exist side by side.
  std::int64_t* m_Nodes = nullptr;
  std::size_t m_Size = 0;     ///< entries in use (a multiple of kBlockEntries)
  std::size_t m_Capacity = 0; ///< entries allocated
  std::int64_t m_Roots[kNumClasses];
};

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_TEXT_STRINGS_HASHRADIXTABLE_H
