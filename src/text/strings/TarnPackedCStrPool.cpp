//===- TarnPackedCStrPool.cpp - Append-only C strings ------------------------===//
//
// Shared blocks are allocated uninitialised, at the full capacity, when the
// first string that needs one arrives; a string is written once and its
// bytes never move.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnPackedCStrPool.h"

#include <cstring>
#include <limits>
#include <new>

TarnPackedCStrPool::TarnPackedCStrPool(std::uint64_t blockCapacity)
    : m_BlockCapacity(blockCapacity) {}

TarnPackedCStrPool::~TarnPackedCStrPool() = default;

char* TarnPackedCStrPool::NewBlock(std::size_t size) {
  m_Blocks.reserve(m_Blocks.size() + 1); // so that push_back cannot leak the block
  m_Blocks.emplace_back(new char[size]);
  m_BytesReserved += size;
  return m_Blocks.back().get();
}

const char* TarnPackedCStrPool::Append(const char* s) {
  return s == nullptr ? Append("", 0) : Append(s, std::strlen(s));
}

const char* TarnPackedCStrPool::Append(const char* s, std::size_t length) {
  if (length == std::numeric_limits<std::size_t>::max())
    throw std::bad_alloc();
  const std::size_t need = length + 1;
  char* at;
  if (need <= m_Room) {
    at = m_Free;
    m_Free += need;
    m_Room -= need;
  } else if (need >= m_BlockCapacity) {
    // As long as a whole block or longer: a block of its own, and the
    // current shared block keeps its room for the strings that follow.
    at = NewBlock(need);
  } else {
    at = NewBlock(static_cast<std::size_t>(m_BlockCapacity));
    m_Free = at + need;
    m_Room = static_cast<std::size_t>(m_BlockCapacity) - need;
  }
  if (length != 0)
    std::memcpy(at, s, length);
  at[length] = '\0';
  ++m_NumStrings;
  return at;
}
