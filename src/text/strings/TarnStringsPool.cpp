//===- TarnStringsPool.cpp - String interning ------------------------------===//
//
// The tables behind the identifiers:
//   - the character store, which owns the bytes of every string;
//   - the string table, entry i pointing to the string of identifier i
//     (entry 0 to a static empty string);
//   - the radix table, from a djb2 hash value to its bucket;
//   - the buckets, one per hash value in use, each the list of the table
//     indices with that hash in the order of addition. The lists are
//     threaded through one array parallel to the string table (the index
//     of the next string with the same hash), so a bucket is three numbers
//     and needs no allocation of its own.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringsPool.h"

#include "HashRadixTable.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnPackedCStrPool.h"

#include <cassert>
#include <cstring>
#include <limits>
#include <utility>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|TarnStringsPool] ";
const char* const kCodeNul = "231601000001";
const char* const kCodeFull = "231601000002";

/// The empty string of entry 0 (identifier 0, no string).
const char kNoString[] = "";

/// Marks the end of a bucket's list.
constexpr std::int32_t kEndOfList = -1;

/// The largest identifier: the table holds at most this many entries + 1.
constexpr std::int64_t kMaxId = std::numeric_limits<std::int32_t>::max();

/// Grows v geometrically so that one more element fits without a
/// reallocation during the push_back that follows.
template <typename V> void MakeRoomForOne(V& v) {
  if (v.size() == v.capacity())
    v.reserve(v.capacity() < 8 ? 8 : 2 * v.capacity());
}

} // namespace

struct TarnStringsPool::Tables {
  /// One hash value in use and its list of table indices.
  struct Bucket {
    std::uint32_t hash;
    std::int32_t head; ///< first table index with this hash
    std::int32_t tail; ///< last one, where the next is linked on
  };

  explicit Tables(std::uint64_t blockCapacity)
      : store(blockCapacity), table{kNoString}, next{kEndOfList} {}

  /// A deep copy: the same strings in the same order, copied into a store
  /// of its own; the indices held by the radix table and the buckets stay
  /// valid as they are.
  Tables(const Tables& from)
      : store(from.store.GetBlockCapacity()), table{kNoString}, radix(from.radix),
        buckets(from.buckets), next(from.next) {
    table.reserve(from.table.size());
    for (std::size_t i = 1; i < from.table.size(); ++i)
      table.push_back(store.Append(from.table[i]));
  }

  TarnPackedCStrPool store;
  std::vector<const char*> table;
  tarn_detail::HashRadixTable radix;
  std::vector<Bucket> buckets;
  /// next[i]: the table index after i in i's bucket, or kEndOfList.
  std::vector<std::int32_t> next;
};

TarnStringsPool::TarnStringsPool() : TarnStringsPool(kDefaultBlockCapacity) {}

TarnStringsPool::TarnStringsPool(std::uint64_t blockCapacity)
    : m_Tables(new Tables(blockCapacity)) {}

TarnStringsPool::TarnStringsPool(const TarnStringsPool& other)
    : m_Tables(new Tables(*other.m_Tables)) {}

TarnStringsPool& TarnStringsPool::operator=(const TarnStringsPool& other) {
  if (this != &other) {
    TarnStringsPool copy(other);
    std::swap(m_Tables, copy.m_Tables);
  }
  return *this;
}

TarnStringsPool::~TarnStringsPool() = default;

std::uint32_t TarnStringsPool::HashOf(const char* s) {
  std::uint32_t hash = 5381;
  if (s == nullptr)
    return hash;
  // Unsigned arithmetic wraps modulo 2^32; a byte above 127 adds its
  // negative signed-char value, as the classic djb2 over char does.
  for (; *s != '\0'; ++s)
    hash = hash * 33 + static_cast<std::uint32_t>(static_cast<signed char>(*s));
  return hash;
}

std::int64_t TarnStringsPool::PoolIndexOf(const char* s, std::uint32_t& hash) const {
  const Tables& t = *m_Tables;
  hash = HashOf(s);
  const std::int64_t bucket = t.radix.Find(hash);
  if (bucket >= 0) {
    if (s == nullptr)
      s = kNoString;
    for (std::int32_t i = t.buckets[bucket].head; i != kEndOfList; i = t.next[i])
      if (std::strcmp(t.table[i], s) == 0)
        return i;
  }
  return static_cast<std::int64_t>(t.table.size());
}

Tarn_SP_STRING_ID TarnStringsPool::AddString(const char* s, PoolAddOper& oper) {
  Tables& t = *m_Tables;
  std::uint32_t hash;
  const std::int64_t found = PoolIndexOf(s, hash);
  const std::int64_t size = static_cast<std::int64_t>(t.table.size());
  if (found < size) {
    oper = POOL_STRING_PRESENT;
    return static_cast<std::int32_t>(found);
  }
  if (size > kMaxId)
    throw ZEL_Failure(ZEL_Code(kCodeFull),
                      ZEL_MESSAGE("TarnStringsPool::AddString: the pool is full, it holds "
                                  "%lld strings (the largest identifier)",
                                  static_cast<long long>(kMaxId)),
                      kHeader);
  const std::int32_t index = static_cast<std::int32_t>(size);
  // Everything that can fail for want of memory happens before the tables
  // change, so a failed call leaves the pool as it was (a string copied into
  // the store or an empty radix block at most are left unused).
  MakeRoomForOne(t.table);
  MakeRoomForOne(t.next);
  const char* copy = t.store.Append(s);
  std::int64_t& entry = t.radix.Insert(hash);
  if (entry < 0) {
    MakeRoomForOne(t.buckets);
    t.buckets.push_back({hash, index, index});
    entry = static_cast<std::int64_t>(t.buckets.size() - 1);
  } else {
    Tables::Bucket& bucket = t.buckets[entry];
    t.next[bucket.tail] = index;
    bucket.tail = index;
  }
  t.table.push_back(copy);
  t.next.push_back(kEndOfList);
  oper = POOL_STRING_ADDED;
  return index;
}

Tarn_SP_STRING_ID TarnStringsPool::AddString(const char* s) {
  PoolAddOper oper;
  return AddString(s, oper);
}

Tarn_SP_STRING_ID TarnStringsPool::AddString(const std::string& s, PoolAddOper& oper) {
  const std::size_t nul = s.find('\0');
  if (nul != std::string::npos)
    throw ZEL_Failure(ZEL_Code(kCodeNul),
                      ZEL_MESSAGE("TarnStringsPool::AddString: the string holds a NUL byte at "
                                  "position %zu of %zu; the pool stores C strings",
                                  nul, s.size()),
                      kHeader);
  return AddString(s.c_str(), oper);
}

Tarn_SP_STRING_ID TarnStringsPool::AddString(const std::string& s) {
  PoolAddOper oper;
  return AddString(s, oper);
}

Tarn_SP_STRING_ID TarnStringsPool::FindString(const char* s) const {
  std::uint32_t hash;
  const std::int64_t found = PoolIndexOf(s, hash);
  return found < static_cast<std::int64_t>(m_Tables->table.size())
             ? static_cast<std::int32_t>(found)
             : 0;
}

Tarn_SP_STRING_ID TarnStringsPool::FindString(const std::string& s) const {
  // A string with a NUL byte can never have been stored.
  return s.find('\0') != std::string::npos ? Tarn_SP_STRING_ID() : FindString(s.c_str());
}

const char* TarnStringsPool::GetString(Tarn_SP_STRING_ID id) const {
  assert(id >= 0 && static_cast<std::size_t>(id) < m_Tables->table.size() &&
         "TarnStringsPool::GetString: identifier out of range");
  return m_Tables->table[static_cast<std::size_t>(id.m_Id)];
}

const char* TarnStringsPool::GetStringAtIdx(std::int64_t position) const {
  assert(HasStringAtIdx(position) && "TarnStringsPool::GetStringAtIdx: position out of range");
  return m_Tables->table[static_cast<std::size_t>(position + 1)];
}

bool TarnStringsPool::HasStringAtIdx(std::int64_t position) const {
  // position + 1 < size, written so that no sum can overflow.
  return position >= -1 && position < static_cast<std::int64_t>(m_Tables->table.size()) - 1;
}

bool TarnStringsPool::IsEmpty() const { return m_Tables->table.size() == 1; }

void TarnStringsPool::GetAllStrings(std::vector<const char*>& out) const {
  out.assign(m_Tables->table.begin() + 1, m_Tables->table.end());
}

void TarnStringsPool::DumpPool() const { DumpPool(stdout); }

void TarnStringsPool::DumpPool(std::FILE* out) const {
  const Tables& t = *m_Tables;
  std::fputs("\n--- STRINGS STORED: ---\n", out);
  for (std::size_t e = 0; e < t.table.size(); ++e)
    std::fprintf(out, "%6ld: \"%s\"\n", static_cast<long>(e + 1), t.table[e]);
  std::fputs("\n--- HASH TABLE: ---\n", out);
  t.radix.ForEachInOrder([&](std::uint32_t, std::int64_t bucketIndex) {
    const Tables::Bucket& bucket = t.buckets[bucketIndex];
    std::fprintf(out, "%16lX: ", static_cast<unsigned long>(bucket.hash));
    for (std::int32_t i = bucket.head; i != kEndOfList; i = t.next[i])
      std::fprintf(out, "%s[%ld]=\"%s\"", i == bucket.head ? "" : ", ", static_cast<long>(i),
                   t.table[i]);
    std::fputc('\n', out);
  });
  std::fputc('\n', out);
}
