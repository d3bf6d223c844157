//===- StringHashIndex.cpp - Hash index over a string table -----------------===//
#include "StringHashIndex.h"

#include <cassert>
#include <new>

namespace tarn_detail {

namespace {
/// Slots of a new index: 16, so that a small pool costs 64 bytes.
constexpr int kInitialLog2 = 4;
/// The most slots that 32-bit slot numbers can address.
constexpr int kMaxLog2 = 32;
} // namespace

StringHashIndex::StringHashIndex()
    : m_Slots(std::size_t{1} << kInitialLog2, 0), m_IdMask((1u << kInitialLog2) - 1),
      m_Shift(32 - kInitialLog2) {}

void StringHashIndex::Insert(std::size_t freeSlot, std::uint32_t hash, std::int32_t id,
                             const std::function<std::uint32_t(std::int32_t)>& hashOf) {
  assert(id > 0 && static_cast<std::size_t>(id) == m_Size + 1 && m_Slots[freeSlot] == 0 &&
         "StringHashIndex::Insert: not the next identifier, or the slot is taken");
  // Keep at most three quarters of the slots in use. Growing first means a
  // failed growth leaves the index unchanged; the free slot is then found
  // anew in the larger table.
  if (4 * (m_Size + 1) > 3 * m_Slots.size()) {
    Grow(hashOf);
    for (freeSlot = Home(hash); m_Slots[freeSlot] != 0; freeSlot = (freeSlot + 1) & m_IdMask) {
    }
  }
  m_Slots[freeSlot] = TagOf(hash) | static_cast<std::uint32_t>(id);
  ++m_Size;
}

void StringHashIndex::Grow(const std::function<std::uint32_t(std::int32_t)>& hashOf) {
  const int log2 = 32 - m_Shift + 1;
  if (log2 > kMaxLog2)
    throw std::bad_alloc();
  std::vector<std::uint32_t> slots(std::size_t{1} << log2, 0);
  const std::uint32_t oldIdMask = m_IdMask;
  slots.swap(m_Slots);
  m_IdMask = static_cast<std::uint32_t>(m_Slots.size() - 1);
  m_Shift = 32 - log2;
  for (const std::uint32_t old : slots) {
    if (old == 0)
      continue;
    const std::uint32_t id = old & oldIdMask;
    const std::uint32_t hash = hashOf(static_cast<std::int32_t>(id));
    std::size_t at = Home(hash);
    while (m_Slots[at] != 0)
      at = (at + 1) & m_IdMask;
    m_Slots[at] = TagOf(hash) | id;
  }
}

} // namespace tarn_detail
