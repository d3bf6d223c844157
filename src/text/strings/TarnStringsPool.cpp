//===- TarnStringsPool.cpp - String interning ------------------------------===//
//
// The tables behind the identifiers:
//   - the character store, which owns the bytes of every string;
//   - the string table, entry i pointing to the string of identifier i
//     (entry 0 to a static empty string), in chunks, so that it grows
//     without copying and without holding unused room of up to its size;
//   - the hash index, which finds the identifier of a string from its hash
//     in a few probes of one flat array of 32-bit slots.
// The strings of one hash form that hash's bucket; the dump lists the
// buckets in radix order, sorted when the dump is made.
//
// Why not a radix tree of 256-entry blocks keyed by the hash: djb2 values of
// words are spread over all 2^32 values, so such a tree needs one 2 KiB leaf
// block for nearly every distinct string (about 170 MiB for 50,000 words,
// 2 GiB for a million); the flat index costs 4 to 11 bytes per string and
// gives the same identifiers and the same dump.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringsPool.h"

#include "ChunkedStringTable.h"
#include "StringHashIndex.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnPackedCStrPool.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <limits>
#include <tuple>
#include <utility>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|TarnStringsPool] ";
const char* const kCodeNul = "231601000001";
const char* const kCodeFull = "231601000002";

/// The empty string of entry 0 (identifier 0, no string).
const char kNoString[] = "";

/// The largest identifier: the table holds at most this many entries + 1.
constexpr std::int64_t kMaxId = std::numeric_limits<std::int32_t>::max();

/// The radix class of a hash, by its number of significant bytes: 0 for
/// four, 1 for three, 2 for two, 3 for one or none. The dump lists the
/// classes in this order.
///   0x12345678 => 0,  0x1505 => 2,  0x45 => 3,  0 => 3
int RadixClassOf(std::uint32_t hash) { return hash == 0 ? 3 : __builtin_clz(hash) / 8; }

/// A byte as djb2 adds it: read as signed char, then taken modulo 2^32.
inline std::uint32_t Djb2Byte(char c) {
  return static_cast<std::uint32_t>(static_cast<signed char>(c));
}

/// djb2: h = 5381, then h = h * 33 + c for every byte c read as signed
/// char. Unsigned arithmetic wraps modulo 2^32 as the hash wants; a byte
/// above 127 adds its negative value.
///
/// Four bytes at a time, while none of them ends the string, the steps are
/// folded into h * 33^4 + c0 * 33^3 + c1 * 33^2 + c2 * 33 + c3, whose terms
/// in c do not wait for h: one multiplication and one addition on the
/// chain of dependent steps instead of four of each. The && stops reading
/// at the terminator.
inline std::uint32_t Djb2(const char* s) {
  std::uint32_t hash = 5381;
  while (s[0] != '\0' && s[1] != '\0' && s[2] != '\0' && s[3] != '\0') {
    hash = hash * 1185921u /* 33^4 */ + Djb2Byte(s[0]) * 35937u /* 33^3 */ +
           Djb2Byte(s[1]) * 1089u /* 33^2 */ + Djb2Byte(s[2]) * 33u + Djb2Byte(s[3]);
    s += 4;
  }
  for (; *s != '\0'; ++s)
    hash = hash * 33 + Djb2Byte(*s);
  return hash;
}

} // namespace

struct TarnStringsPool::Tables {
  explicit Tables(std::uint64_t blockCapacity) : store(blockCapacity) {
    table.push_back(kNoString);
  }

  /// A deep copy: the same strings in the same order, copied into a store
  /// of its own; the identifiers held by the index stay valid as they are.
  Tables(const Tables& from) : store(from.store.GetBlockCapacity()), index(from.index) {
    table.push_back(kNoString);
    for (std::size_t i = 1; i < from.table.size(); ++i)
      table.push_back(store.Append(from.table[i]));
  }

  /// The identifier of s (its hash given) or 0; freeSlot as in
  /// StringHashIndex::Find.
  std::int32_t Find(const char* s, std::uint32_t hash, std::size_t& freeSlot) const {
    return index.Find(
        hash, [&](std::int32_t id) { return std::strcmp(table[id], s) == 0; }, freeSlot);
  }

  /// AddString for a C string that is not null: look-up, and storage when
  /// absent.
  std::int32_t Intern(const char* s, PoolAddOper& oper) {
    const std::uint32_t hash = Djb2(s);
    std::size_t freeSlot = 0;
    const std::int32_t found = Find(s, hash, freeSlot);
    if (found != 0) {
      oper = POOL_STRING_PRESENT;
      return found;
    }
    const std::int32_t id = Store(s, hash, freeSlot);
    oper = POOL_STRING_ADDED;
    return id;
  }

  /// Stores s, absent with this hash, under the next identifier; freeSlot
  /// from the Find that missed it. Kept out of line: most calls of a pool
  /// find their string.
  __attribute__((noinline)) std::int32_t Store(const char* s, std::uint32_t hash,
                                               std::size_t freeSlot) {
    const std::int64_t id = static_cast<std::int64_t>(table.size());
    if (id > kMaxId)
      throw ZEL_Failure(ZEL_Code(kCodeFull),
                        ZEL_MESSAGE("TarnStringsPool::AddString: the pool is full, it holds "
                                    "%lld strings (the largest identifier)",
                                    static_cast<long long>(kMaxId)),
                        kHeader);
    // Everything that may fail for want of memory comes before the index
    // and the table change, so that a failed call leaves the pool as it was
    // (at most a string copied into the store stays unused).
    table.MakeRoomForOne();
    const char* copy = store.Append(s);
    index.Insert(freeSlot, hash, static_cast<std::int32_t>(id),
                 [this](std::int32_t i) { return Djb2(table[i]); });
    table.push_back(copy);
    return static_cast<std::int32_t>(id);
  }

  TarnPackedCStrPool store;
  tarn_detail::ChunkedStringTable table;
  tarn_detail::StringHashIndex index;
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
  return Djb2(s == nullptr ? kNoString : s);
}

std::int64_t TarnStringsPool::PoolIndexOf(const char* s, std::uint32_t& hash) const {
  if (s == nullptr)
    s = kNoString;
  hash = Djb2(s);
  std::size_t freeSlot = 0;
  const std::int32_t id = m_Tables->Find(s, hash, freeSlot);
  return id != 0 ? id : static_cast<std::int64_t>(m_Tables->table.size());
}

Tarn_SP_STRING_ID TarnStringsPool::AddString(const char* s, PoolAddOper& oper) {
  return m_Tables->Intern(s == nullptr ? kNoString : s, oper);
}

Tarn_SP_STRING_ID TarnStringsPool::AddString(const char* s) {
  PoolAddOper oper;
  return m_Tables->Intern(s == nullptr ? kNoString : s, oper);
}

Tarn_SP_STRING_ID TarnStringsPool::AddString(const std::string& s, PoolAddOper& oper) {
  const std::size_t nul = s.find('\0');
  if (nul != std::string::npos)
    throw ZEL_Failure(ZEL_Code(kCodeNul),
                      ZEL_MESSAGE("TarnStringsPool::AddString: the string holds a NUL byte at "
                                  "position %zu of %zu; the pool stores C strings",
                                  nul, s.size()),
                      kHeader);
  return m_Tables->Intern(s.c_str(), oper);
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
  const tarn_detail::ChunkedStringTable& table = m_Tables->table;
  out.clear();
  out.reserve(table.size() - 1);
  for (std::size_t id = 1; id < table.size(); ++id)
    out.push_back(table[id]);
}

void TarnStringsPool::DumpPool() const { DumpPool(stdout); }

void TarnStringsPool::DumpPool(std::FILE* out) const {
  const Tables& t = *m_Tables;
  std::fputs("\n--- STRINGS STORED: ---\n", out);
  for (std::size_t e = 0; e < t.table.size(); ++e)
    std::fprintf(out, "%6ld: \"%s\"\n", static_cast<long>(e + 1), t.table[e]);
  std::fputs("\n--- HASH TABLE: ---\n", out);
  // Buckets in radix order: every identifier with its hash, sorted by
  // class, then hash, then identifier (so each bucket in the order of
  // addition), and printed one bucket a line.
  std::vector<std::tuple<int, std::uint32_t, std::int32_t>> order;
  order.reserve(t.table.size() - 1);
  for (std::size_t id = 1; id < t.table.size(); ++id) {
    const std::uint32_t hash = Djb2(t.table[id]);
    order.emplace_back(RadixClassOf(hash), hash, static_cast<std::int32_t>(id));
  }
  std::sort(order.begin(), order.end());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const std::uint32_t hash = std::get<1>(order[i]);
    const std::int32_t id = std::get<2>(order[i]);
    const bool first = i == 0 || std::get<1>(order[i - 1]) != hash;
    if (first)
      std::fprintf(out, "%16lX: ", static_cast<unsigned long>(hash));
    std::fprintf(out, "%s[%ld]=\"%s\"", first ? "" : ", ", static_cast<long>(id), t.table[id]);
    if (i + 1 == order.size() || std::get<1>(order[i + 1]) != hash)
      std::fputc('\n', out);
  }
  std::fputc('\n', out);
}
