//===- TarnUtilities/text/TarnPackedCStrPool.h - Append-only C strings -*- C++ -*-===//
//
// TarnPackedCStrPool stores zero-terminated strings one after the other in
// blocks of a fixed capacity and hands out a pointer to each stored copy.
// Strings are never moved or freed before the pool is destroyed, so every
// pointer stays valid while the pool grows. A string that does not fit into
// the room left in the current block starts a new block; a string that
// needs a whole block or more (terminator included) gets a block of its own
// size, and the current block stays open for the strings after it. A
// capacity of 0 gives every string a block of its own.
//
// Example:
//   TarnPackedCStrPool store(16);
//   const char* a = store.Append("node");    // block 1, bytes 0..4
//   const char* b = store.Append("element"); // block 1, bytes 5..12
//   store.Append("a string of 23 bytes...");  // a block of 24 bytes
//   // a and b still point to "node" and "element".
//
// What it leaves out: no look-up, no removal; TarnStringsPool builds the
// look-up on top of it.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNPACKEDCSTRPOOL_H
#define TARNUTILITIES_TEXT_TARNPACKEDCSTRPOOL_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class TARN_API TarnPackedCStrPool {
public:
  /// The block capacity in bytes when none is given: 64 KiB.
  static constexpr std::uint64_t kDefaultBlockCapacity = 0x10000;

  explicit TarnPackedCStrPool(std::uint64_t blockCapacity = kDefaultBlockCapacity);
  TarnPackedCStrPool(const TarnPackedCStrPool&) = delete;
  TarnPackedCStrPool& operator=(const TarnPackedCStrPool&) = delete;
  TarnPackedCStrPool(TarnPackedCStrPool&&) noexcept = default;
  TarnPackedCStrPool& operator=(TarnPackedCStrPool&&) noexcept = default;
  ~TarnPackedCStrPool();

  /// Copies the C string s (a null pointer is read as "") with its
  /// terminator and returns the address of the copy.
  const char* Append(const char* s);
  /// Copies the `length` bytes at s and a terminating NUL. The bytes must
  /// not contain a NUL if the copy is to be read back as that C string.
  const char* Append(const char* s, std::size_t length);

  /// Number of strings appended.
  std::size_t NumStrings() const { return m_NumStrings; }
  /// Number of blocks allocated (shared and own-size blocks).
  std::size_t NumBlocks() const { return m_Blocks.size(); }
  /// Bytes held by all blocks.
  std::uint64_t BytesReserved() const { return m_BytesReserved; }
  std::uint64_t GetBlockCapacity() const { return m_BlockCapacity; }

private:
  /// Returns a fresh block of `size` bytes owned by the pool.
  char* NewBlock(std::size_t size);

  std::vector<std::unique_ptr<char[]>> m_Blocks;
  std::uint64_t m_BlockCapacity;
  char* m_Free = nullptr;    ///< next free byte of the current shared block
  std::size_t m_Room = 0;    ///< bytes left in the current shared block
  std::size_t m_NumStrings = 0;
  std::uint64_t m_BytesReserved = 0;
};

#endif // TARNUTILITIES_TEXT_TARNPACKEDCSTRPOOL_H
