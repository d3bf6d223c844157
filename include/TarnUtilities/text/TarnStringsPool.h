//===- TarnUtilities/text/TarnStringsPool.h - String interning --*- C++ -*-===//
//
// TarnStringsPool interns C strings: every distinct string is stored once,
// in the order of first addition, and is named by a Tarn_SP_STRING_ID
// (1, 2, 3 ...). Look-up hashes the string with djb2, finds the bucket of
// stored strings with that hash in a flat hash index, and compares the
// string with those. The characters live in a TarnPackedCStrPool and are
// never moved, so the C strings handed out stay valid as long as the pool.
//
// Example:
//   TarnStringsPool pool;
//   PoolAddOper oper;
//   pool.AddString("a", oper);   // 1, oper == POOL_STRING_ADDED
//   pool.AddString("b");         // 2
//   pool.AddString("a", oper);   // 1, oper == POOL_STRING_PRESENT
//   pool.FindString("c");        // 0
//   pool.GetString(2);           // "b"
//
// Entry 0 of the table is an empty string that stands for identifier 0; it
// is not in the look-up, so the first AddString("") stores "" as a string
// of its own (see docs/string-pools.md). A null C string is read as "".
// A std::string holding a NUL byte is not a C string: AddString refuses it
// with a ZEL_Failure and FindString answers 0.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNSTRINGSPOOL_H
#define TARNUTILITIES_TEXT_TARNSTRINGSPOOL_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/text/Tarn_SP_STRING_ID.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

/// What AddString did.
enum PoolAddOper : std::int32_t {
  POOL_STRING_ADDED = 1,   ///< the string was new and has been stored
  POOL_STRING_PRESENT = 2, ///< the string was already in the pool
};

class TARN_API TarnStringsPool {
public:
  /// Block capacity of the character store when none is given: 64 KiB.
  static constexpr std::uint64_t kDefaultBlockCapacity = 0x10000;

  TarnStringsPool();
  /// A pool whose character store allocates blocks of blockCapacity bytes
  /// (see TarnPackedCStrPool; 0 gives every string a block of its own).
  explicit TarnStringsPool(std::uint64_t blockCapacity);
  /// A deep copy: same identifiers, same hash table, own characters.
  TarnStringsPool(const TarnStringsPool& other);
  TarnStringsPool& operator=(const TarnStringsPool& other);
  virtual ~TarnStringsPool();

  /// @name Adding and finding
  /// @{
  /// The identifier of s, after storing s if it was absent.
  Tarn_SP_STRING_ID AddString(const char* s);
  /// The same; oper tells whether s was added or already present.
  Tarn_SP_STRING_ID AddString(const char* s, PoolAddOper& oper);
  /// The same for a std::string; throws ZEL_Failure if s holds a NUL byte.
  Tarn_SP_STRING_ID AddString(const std::string& s);
  Tarn_SP_STRING_ID AddString(const std::string& s, PoolAddOper& oper);

  /// The identifier of s, or 0 when s is not in the pool.
  Tarn_SP_STRING_ID FindString(const char* s) const;
  /// The same for a std::string; 0 if s holds a NUL byte.
  Tarn_SP_STRING_ID FindString(const std::string& s) const;
  /// @}

  /// @name Reading the strings back
  /// Identifiers and positions are checked by assertions in debug builds
  /// only, like std::vector::operator[].
  /// @{
  /// The stored string of id; 0 gives the empty entry "".
  const char* GetString(Tarn_SP_STRING_ID id) const;
  /// The zero-based position of id among the stored strings: id - 1.
  std::int64_t GetStringIdx(Tarn_SP_STRING_ID id) const { return std::int64_t{id} - 1; }
  /// The string at a zero-based position: GetString(position + 1).
  const char* GetStringAtIdx(std::int64_t position) const;
  /// True when position + 1 names an entry of the table, that is when
  /// GetStringAtIdx(position) may be called (-1 names the empty entry).
  bool HasStringAtIdx(std::int64_t position) const;
  /// True while no string has been added.
  bool IsEmpty() const;
  /// Replaces out by every stored string in the order of addition.
  void GetAllStrings(std::vector<const char*>& out) const;
  /// @}

  /// @name Diagnostics
  /// @{
  /// Lists the strings and the hash table on standard output.
  void DumpPool() const;
  /// The same listing written to out.
  void DumpPool(std::FILE* out) const;
  /// @}

  /// The djb2 hash of s, bytes read as signed char, modulo 2^32:
  ///   "" => 5381,  "a" => 5381 * 33 + 97 = 177670.
  /// A null pointer hashes like "".
  static std::uint32_t HashOf(const char* s);

private:
  /// The table index of s (or the table size when absent); the hash of s
  /// is returned through hash.
  std::int64_t PoolIndexOf(const char* s, std::uint32_t& hash) const;

  struct Tables;
  std::unique_ptr<Tables> m_Tables;
};

#endif // TARNUTILITIES_TEXT_TARNSTRINGSPOOL_H
