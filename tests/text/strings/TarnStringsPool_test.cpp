//===- TarnStringsPool_test.cpp - String interning --------------------------===//
#include "TarnUtilities/text/TarnStringsPool.h"

#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace {

/// What DumpPool(FILE*) writes, read back from a temporary file.
std::string DumpText(const TarnStringsPool& pool) {
  std::FILE* file = std::tmpfile();
  EXPECT_NE(file, nullptr);
  if (file == nullptr)
    return "";
  pool.DumpPool(file);
  std::string text(static_cast<std::size_t>(std::ftell(file)), '\0');
  std::rewind(file);
  text.resize(std::fread(&text[0], 1, text.size(), file));
  std::fclose(file);
  return text;
}

/// djb2 the plain way, one byte a step: h = h * 33 + c, c as signed char.
std::uint32_t Djb2(const std::string& s) {
  std::uint32_t h = 5381;
  for (char c : s)
    h = h * 33 + static_cast<std::uint32_t>(static_cast<signed char>(c));
  return h;
}

/// The radix class of a hash: 0 for hashes of four significant bytes ... 3
/// for hashes below 256, in which order DumpPool lists them.
int RadixClass(std::uint32_t hash) {
  int bytes = 0;
  for (std::uint32_t h = hash; h != 0; h >>= 8)
    ++bytes;
  return bytes == 0 ? 3 : 4 - bytes;
}

/// The listing DumpPool must write for the strings added, in order.
std::string ExpectedDump(const std::vector<std::string>& added) {
  std::string text = "\n--- STRINGS STORED: ---\n     1: \"\"\n";
  char line[64];
  for (std::size_t i = 0; i < added.size(); ++i) {
    std::snprintf(line, sizeof line, "%6zu: ", i + 2);
    text += line + ("\"" + added[i] + "\"\n");
  }
  text += "\n--- HASH TABLE: ---\n";
  std::map<std::tuple<int, std::uint32_t>, std::vector<std::size_t>> buckets;
  for (std::size_t i = 0; i < added.size(); ++i) {
    const std::uint32_t hash = Djb2(added[i]);
    EXPECT_EQ(TarnStringsPool::HashOf(added[i].c_str()), hash) << added[i];
    buckets[{RadixClass(hash), hash}].push_back(i + 1);
  }
  for (const auto& [key, indices] : buckets) {
    std::snprintf(line, sizeof line, "%16X: ", static_cast<unsigned>(std::get<1>(key)));
    text += line;
    for (std::size_t index : indices)
      text += (index == indices.front() ? "[" : ", [") + std::to_string(index) + "]=\"" +
              added[index - 1] + "\"";
    text += "\n";
  }
  return text + "\n";
}

/// All strings of `blocks` two-character blocks taken from {"Ez", "FY"}: they
/// share one djb2 hash, because "Ez" and "FY" do and the hash of a
/// concatenation depends on its prefix only through the prefix's hash.
std::vector<std::string> CollidingFamily(const std::string& first, const std::string& second,
                                         int blocks) {
  std::vector<std::string> family{""};
  for (int b = 0; b < blocks; ++b) {
    std::vector<std::string> longer;
    for (const std::string& s : family) {
      longer.push_back(s + first);
      longer.push_back(s + second);
    }
    family.swap(longer);
  }
  return family;
}

} // namespace

TEST(Tarn_SP_STRING_ID, UsableAboveZero) {
  Tarn_SP_STRING_ID id, seven(7);
  EXPECT_FALSE(id.IsUsable());
  id = seven;
  EXPECT_TRUE(id.IsUsable());
  id.SetUnusable();
  EXPECT_EQ(id, 0);
  EXPECT_EQ(seven, 7);
  EXPECT_FALSE(Tarn_SP_STRING_ID(-1).IsUsable());
}

TEST(TarnStringsPool, HashIsDjb2OverSignedBytes) {
  EXPECT_EQ(TarnStringsPool::HashOf(""), 5381u);
  EXPECT_EQ(TarnStringsPool::HashOf(nullptr), 5381u);
  EXPECT_EQ(TarnStringsPool::HashOf("a"), 177670u);
  EXPECT_EQ(TarnStringsPool::HashOf("\xff"), 5381u * 33 - 1); // byte 255 adds -1
  EXPECT_EQ(TarnStringsPool::HashOf("abc"), 193485963u);
  EXPECT_EQ(TarnStringsPool::HashOf("tarn"), 0x7C9E573Au); // wraps modulo 2^32
}

TEST(TarnStringsPool, AddsFindsAndReadsBack) {
  TarnStringsPool pool;
  std::vector<const char*> all{"stale"};
  EXPECT_TRUE(pool.IsEmpty());
  pool.GetAllStrings(all);
  EXPECT_TRUE(all.empty());
  EXPECT_EQ(pool.FindString("a"), 0);
  EXPECT_EQ(pool.FindString(""), 0);

  PoolAddOper oper;
  EXPECT_EQ(pool.AddString("a", oper), 1);
  EXPECT_EQ(oper, POOL_STRING_ADDED);
  EXPECT_EQ(pool.AddString(std::string("b"), oper), 2);
  EXPECT_EQ(oper, POOL_STRING_ADDED);
  EXPECT_EQ(pool.AddString("a", oper), 1);
  EXPECT_EQ(oper, POOL_STRING_PRESENT);
  EXPECT_EQ(pool.AddString(std::string("b")), 2);
  EXPECT_FALSE(pool.IsEmpty());
  EXPECT_EQ(pool.FindString(std::string("b")), 2);
  EXPECT_EQ(pool.FindString("c"), 0);

  EXPECT_STREQ(pool.GetString(0), "");
  EXPECT_STREQ(pool.GetString(2), "b");
  EXPECT_EQ(pool.GetStringIdx(1), 0);
  EXPECT_STREQ(pool.GetStringAtIdx(0), "a");
  EXPECT_STREQ(pool.GetStringAtIdx(1), "b");
  EXPECT_STREQ(pool.GetStringAtIdx(-1), "");
  for (std::int64_t position : {-1, 0, 1})
    EXPECT_TRUE(pool.HasStringAtIdx(position)) << position;
  for (std::int64_t position : {std::int64_t{-2}, std::int64_t{2}, INT64_MAX, INT64_MIN})
    EXPECT_FALSE(pool.HasStringAtIdx(position)) << position;
  pool.GetAllStrings(all);
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0], pool.GetString(1));
  EXPECT_EQ(all[1], pool.GetString(2));
}

TEST(TarnStringsPool, EmptyAndNullStringsAreStoredLikeAnyOther) {
  // Entry 0 is not in the look-up: "" is absent until it is added, and then
  // gets an identifier of its own. A null C string reads as "".
  TarnStringsPool pool;
  pool.AddString("x");
  PoolAddOper oper;
  EXPECT_EQ(pool.AddString("", oper), 2);
  EXPECT_EQ(oper, POOL_STRING_ADDED);
  EXPECT_EQ(pool.AddString(nullptr, oper), 2);
  EXPECT_EQ(oper, POOL_STRING_PRESENT);
  EXPECT_EQ(pool.FindString(nullptr), 2);
  EXPECT_STREQ(pool.GetString(2), "");
}

TEST(TarnStringsPool, RefusesStdStringsWithNulBytes) {
  TarnStringsPool pool;
  pool.AddString("a");
  const std::string withNul("a\0b", 3);
  EXPECT_EQ(tarn_test::FailureMessage([&] { pool.AddString(withNul); }),
            "TarnStringsPool::AddString: the string holds a NUL byte at position 1 of 3; the "
            "pool stores C strings");
  EXPECT_EQ(pool.FindString(withNul), 0);
  EXPECT_EQ(pool.FindString(std::string("a")), 1);
  EXPECT_EQ(pool.AddString("c"), 2); // nothing was stored by the refused call
}

TEST(TarnStringsPool, KeepsCollidingStringsApart) {
  // Two-character strings with equal hashes, found here by brute force.
  std::unordered_map<std::uint32_t, std::string> firstOfHash;
  std::vector<std::pair<std::string, std::string>> pairs;
  for (char a = '!'; a <= '~'; ++a)
    for (char b = '!'; b <= '~'; ++b) {
      const std::string s{a, b};
      const auto [it, added] = firstOfHash.emplace(TarnStringsPool::HashOf(s.c_str()), s);
      if (!added)
        pairs.emplace_back(it->second, s);
    }
  ASSERT_GE(pairs.size(), 2u);
  for (const auto& [first, second] : {pairs.front(), pairs.back()}) {
    SCOPED_TRACE(first + " / " + second);
    std::vector<std::string> family = CollidingFamily(first, second, 5);
    // Add all but the last of 32 strings with one hash, then a string of
    // another hash: every one keeps its own identifier.
    TarnStringsPool pool(64);
    for (std::size_t i = 0; i + 1 < family.size(); ++i)
      ASSERT_EQ(pool.AddString(family[i].c_str()), static_cast<std::int32_t>(i + 1));
    EXPECT_EQ(pool.FindString(family.back().c_str()), 0);
    family.pop_back();
    family.push_back("x");
    pool.AddString("x");
    for (std::size_t i = 0; i < family.size(); ++i) {
      EXPECT_EQ(pool.FindString(family[i]), static_cast<std::int32_t>(i + 1));
      EXPECT_EQ(pool.GetString(static_cast<std::int32_t>(i + 1)), family[i]);
    }
    EXPECT_EQ(DumpText(pool), ExpectedDump(family));
  }
}

TEST(TarnStringsPool, DumpListsStringsThenBucketsInRadixOrder) {
  // Hashes of all four classes: "tarn", "abc", "pool" have four significant
  // bytes, "Ez" = "FY" and "a" three, "" two (5381), "daqpwab" one (69).
  TarnStringsPool pool;
  for (const char* s : {"tarn", "Ez", "daqpwab", "", "abc", "FY", "pool", "a"})
    pool.AddString(s);
  EXPECT_EQ(DumpText(pool), "\n"
                            "--- STRINGS STORED: ---\n"
                            "     1: \"\"\n"
                            "     2: \"tarn\"\n"
                            "     3: \"Ez\"\n"
                            "     4: \"daqpwab\"\n"
                            "     5: \"\"\n"
                            "     6: \"abc\"\n"
                            "     7: \"FY\"\n"
                            "     8: \"pool\"\n"
                            "     9: \"a\"\n"
                            "\n"
                            "--- HASH TABLE: ---\n"
                            "         B885C8B: [5]=\"abc\"\n"
                            "        7C9C60DF: [7]=\"pool\"\n"
                            "        7C9E573A: [1]=\"tarn\"\n"
                            "           2B606: [8]=\"a\"\n"
                            "          5973A4: [2]=\"Ez\", [6]=\"FY\"\n"
                            "            1505: [4]=\"\"\n"
                            "              45: [3]=\"daqpwab\"\n"
                            "\n");
  testing::internal::CaptureStdout();
  pool.DumpPool();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), DumpText(pool));
  EXPECT_EQ(DumpText(TarnStringsPool()),
            "\n--- STRINGS STORED: ---\n     1: \"\"\n\n--- HASH TABLE: ---\n\n");
}

TEST(TarnStringsPool, AgreesWithAHashMapOnRandomStrings) {
  // Short strings over a small alphabet (with a byte above 127 and the
  // colliding pair "Ez"/"FY") repeat often; a std::unordered_map gives the
  // identifiers they must get. Copies taken on the way must go on alike.
  std::mt19937 rng(16);
  const std::string alphabet = "EFYzab\xe9";
  std::unordered_map<std::string, std::int32_t> oracle;
  std::vector<std::string> added;
  TarnStringsPool pool(32);
  std::vector<TarnStringsPool> copies;
  for (int step = 0; step < 4000; ++step) {
    std::string s;
    for (int n = static_cast<int>(rng() % 6); n > 0; --n)
      s += alphabet[rng() % alphabet.size()];
    const auto [it, isNew] = oracle.emplace(s, static_cast<std::int32_t>(oracle.size() + 1));
    if (isNew)
      added.push_back(s);
    if (step % 1000 == 999)
      copies.push_back(pool);
    if (step % 3 == 0) {
      ASSERT_EQ(pool.FindString(s), isNew ? 0 : it->second) << s;
      if (isNew) { // the identifier is only taken by the next AddString
        oracle.erase(it);
        added.pop_back();
        continue;
      }
    }
    PoolAddOper oper;
    ASSERT_EQ(pool.AddString(s, oper), it->second) << s;
    ASSERT_EQ(oper, isNew ? POOL_STRING_ADDED : POOL_STRING_PRESENT) << s;
    for (TarnStringsPool& copy : copies)
      ASSERT_EQ(copy.AddString(s), it->second) << s;
  }
  std::vector<const char*> all;
  pool.GetAllStrings(all);
  ASSERT_EQ(all.size(), added.size());
  for (std::size_t i = 0; i < all.size(); ++i)
    ASSERT_EQ(all[i], added[i]);
  EXPECT_EQ(DumpText(pool), ExpectedDump(added));
  // Copies own their characters: they outlive the pool they came from.
  TarnStringsPool assigned(8);
  assigned.AddString("replaced");
  assigned = copies.front();
  copies.clear();
  EXPECT_EQ(DumpText(assigned), ExpectedDump(added));
  EXPECT_NE(pool.GetString(1), assigned.GetString(1));
}

TEST(TarnStringsPool, MillionStringsKeepTheirPointersAndIdentifiers) {
  constexpr std::int32_t kCount = 1000000;
  TarnStringsPool pool(4096);
  std::vector<const char*> stored(kCount + 1);
  char text[32];
  for (std::int32_t i = 1; i <= kCount; ++i) {
    std::snprintf(text, sizeof text, "w%lld", i * 7919LL);
    ASSERT_EQ(pool.AddString(text), i);
    stored[i] = pool.GetString(i);
  }
  for (std::int32_t i = 1; i <= kCount; ++i) {
    std::snprintf(text, sizeof text, "w%lld", i * 7919LL);
    ASSERT_STREQ(stored[i], text);
    ASSERT_EQ(pool.GetString(i), stored[i]);
    ASSERT_EQ(pool.FindString(text), i);
  }
}
