//===- ChunkedStringTable.h - Growable table of C-string pointers -*- C++ -*-===//
//
// The string table of TarnStringsPool: entry i points to the string of
// identifier i. Entries live in chunks of 512 pointers (4 KiB), so the table
// grows without copying its entries, never holds more than one chunk of
// unused room, and reads an entry with two loads and no branch.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_STRINGS_CHUNKEDSTRINGTABLE_H
#define TARNUTILITIES_SRC_TEXT_STRINGS_CHUNKEDSTRINGTABLE_H

#include <cassert>
#include <cstddef>
#include <memory>
#include <vector>

namespace tarn_detail {

class ChunkedStringTable {
public:
  static constexpr int kChunkBits = 9;
  static constexpr std::size_t kChunkSize = std::size_t{1} << kChunkBits;

  const char* operator[](std::size_t i) const {
    assert(i < m_Size && "ChunkedStringTable: entry out of range");
    return m_Chunks[i >> kChunkBits][i & (kChunkSize - 1)];
  }
  std::size_t size() const { return m_Size; }

  /// Makes sure that the next push_back needs no memory; may throw
  /// std::bad_alloc and then changes nothing.
  void MakeRoomForOne() {
    if ((m_Size >> kChunkBits) == m_Chunks.size()) {
      std::unique_ptr<const char*[]> chunk(new const char*[kChunkSize]);
      m_Chunks.push_back(std::move(chunk));
    }
  }
  void push_back(const char* s) {
    MakeRoomForOne();
    m_Chunks[m_Size >> kChunkBits][m_Size & (kChunkSize - 1)] = s;
    ++m_Size;
  }

private:
  std::vector<std::unique_ptr<const char*[]>> m_Chunks;
  std::size_t m_Size = 0;
};

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_TEXT_STRINGS_CHUNKEDSTRINGTABLE_H
