//===- HashRadixTable.cpp - Radix table over 32-bit hash values -------------===//
//
// Growth and copying of the block array; the look-up is inline in the
// header.
//
//===----------------------------------------------------------------------===//
#include "HashRadixTable.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace tarn_detail {

HashRadixTable::HashRadixTable() {
  for (std::int64_t& root : m_Roots)
    root = kEmpty;
}

HashRadixTable::HashRadixTable(const HashRadixTable& other) {
  std::memcpy(m_Roots, other.m_Roots, sizeof m_Roots);
  if (other.m_Size == 0)
    return;
  m_Nodes = static_cast<std::int64_t*>(std::malloc(other.m_Size * sizeof(std::int64_t)));
  if (m_Nodes == nullptr)
    throw std::bad_alloc();
  std::memcpy(m_Nodes, other.m_Nodes, other.m_Size * sizeof(std::int64_t));
  m_Size = m_Capacity = other.m_Size;
}

HashRadixTable::~HashRadixTable() { std::free(m_Nodes); }

std::int64_t HashRadixTable::NewBlock() {
  if (m_Size == m_Capacity) {
    // Doubling keeps the cost of growth linear; 16 blocks (32 KiB) to start
    // with covers the top levels of a small pool.
    const std::size_t grown = m_Capacity == 0 ? 16 * kBlockEntries : 2 * m_Capacity;
    if (grown > std::numeric_limits<std::size_t>::max() / sizeof(std::int64_t))
      throw std::bad_alloc();
    void* nodes = std::realloc(m_Nodes, grown * sizeof(std::int64_t));
    if (nodes == nullptr)
      throw std::bad_alloc();
    m_Nodes = static_cast<std::int64_t*>(nodes);
    m_Capacity = grown;
  }
  const std::size_t start = m_Size;
  // Every byte 0xFF makes every entry -1 (two's complement).
  std::memset(m_Nodes + start, 0xFF, kBlockEntries * sizeof(std::int64_t));
  m_Size += kBlockEntries;
  return static_cast<std::int64_t>(start);
}

std::int64_t& HashRadixTable::Insert(std::uint32_t key) {
  const int keyClass = ClassOf(key);
  if (m_Roots[keyClass] < 0)
    m_Roots[keyClass] = NewBlock();
  std::int64_t node = m_Roots[keyClass];
  for (int shift = TopShift(keyClass); shift > 0; shift -= 8) {
    const std::size_t slot = static_cast<std::size_t>(node) + ((key >> shift) & 0xFF);
    if (m_Nodes[slot] < 0) {
      const std::int64_t child = NewBlock(); // may move m_Nodes: index again below
      m_Nodes[slot] = child;
    }
    node = m_Nodes[slot];
  }
  return m_Nodes[node + (key & 0xFF)];
}

} // namespace tarn_detail
