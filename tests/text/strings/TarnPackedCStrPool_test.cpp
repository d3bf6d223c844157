//===- TarnPackedCStrPool_test.cpp - Append-only C strings ------------------===//
#include "TarnUtilities/text/TarnPackedCStrPool.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

TEST(TarnPackedCStrPool, PacksIntoBlocksAndGivesLongStringsTheirOwn) {
  TarnPackedCStrPool store(8);
  const char* abc = store.Append("abc");       // block 1: 4 of 8 bytes
  const char* full = store.Append("1234567");  // a whole block: one of its own
  const char* de = store.Append("de");         // block 1 again
  const char* fghi = store.Append("fghi");     // 5 bytes do not fit the 1 left: block 3
  const char* big = store.Append("012345678"); // 10 bytes: a block of its own
  const char* xy = store.Append("xy");         // the 3 bytes left in block 3
  EXPECT_STREQ(abc, "abc");
  EXPECT_STREQ(full, "1234567");
  EXPECT_EQ(de, abc + 4);
  EXPECT_STREQ(fghi, "fghi");
  EXPECT_STREQ(big, "012345678");
  EXPECT_EQ(xy, fghi + 5);
  EXPECT_STREQ(xy, "xy");
  EXPECT_STREQ(de, "de");
  EXPECT_STREQ(store.Append(nullptr), "");     // a null string reads as ""
  EXPECT_STREQ(store.Append("q\0r", 3), "q");
  EXPECT_EQ(store.NumStrings(), 8u);
  EXPECT_EQ(store.NumBlocks(), 5u);
  EXPECT_EQ(store.BytesReserved(), 8u + 8u + 8u + 10u + 8u);
}

TEST(TarnPackedCStrPool, CapacityZeroGivesEveryStringItsOwnBlock) {
  TarnPackedCStrPool store(0);
  EXPECT_STREQ(store.Append(""), "");
  EXPECT_STREQ(store.Append("ab"), "ab");
  EXPECT_EQ(store.NumBlocks(), 2u);
  EXPECT_EQ(store.BytesReserved(), 1u + 3u);
}

TEST(TarnPackedCStrPool, PointersStayValidWhileThePoolGrows) {
  std::mt19937 rng(3);
  for (std::uint64_t capacity : {1u, 7u, 64u, 0x10000u}) {
    SCOPED_TRACE(capacity);
    TarnPackedCStrPool store(capacity);
    std::vector<std::string> texts;
    std::vector<const char*> copies;
    for (int i = 0; i < 3000; ++i) {
      texts.emplace_back(rng() % 40, static_cast<char>('a' + i % 26));
      copies.push_back(store.Append(texts.back().c_str()));
    }
    for (std::size_t i = 0; i < texts.size(); ++i)
      ASSERT_EQ(copies[i], texts[i]);
    EXPECT_EQ(store.NumStrings(), texts.size());
  }
}
