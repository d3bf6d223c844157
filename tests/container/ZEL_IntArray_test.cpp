//===- ZEL_IntArray_test.cpp - Growable array of integers -------------------===//
//
// Random edits against std::vector carry the contents; the rest checks the
// capacity rules, ownership of the block and the allocation failures.
//
//===----------------------------------------------------------------------===//
#include "support/FailureOf.h"
#include "TarnUtilities/container/ZEL_IntArray.h"
#include "TarnUtilities/logging/ZEL_Failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
// The allocation-failure tests ask for blocks no machine has; the sanitizer
// must let malloc/realloc answer null as the C runtime does, not abort.
extern "C" __attribute__((visibility("default"), used)) const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
#endif

namespace {

std::vector<int> Elements(const ZEL_IntArray& a) { return std::vector<int>(a.begin(), a.end()); }

// 2^60 ints (4 EiB) cannot be had; 2^62 ints overflow size_t when counted in
// bytes and must not wrap to a small request.
constexpr std::uint64_t kUnallocatable = std::uint64_t(1) << 60;
constexpr std::uint64_t kByteOverflow = std::uint64_t(1) << 62;

} // namespace

TEST(ZEL_IntArray, PushBackGrowsByHalfFromTenAndReserveHasThatMinimum) {
  ZEL_IntArray a;
  std::vector<std::uint64_t> capacities;
  for (int i = 0; i < 60; ++i) {
    a.PushBack(i * 7 - 100);
    if (capacities.empty() || capacities.back() != a.capacity)
      capacities.push_back(a.capacity);
  }
  EXPECT_EQ(capacities, (std::vector<std::uint64_t>{10, 15, 23, 35, 53, 80}));
  // {capacity before (0: none), request, capacity after}
  const std::uint64_t cases[][3] = {{0, 0, 10}, {0, 10, 10}, {0, 11, 11}, {20, 5, 20}, {20, 21, 21}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c[0]) + " then " + std::to_string(c[1]));
    ZEL_IntArray r;
    if (c[0])
      r.Reserve(c[0]);
    r.Reserve(c[1]);
    EXPECT_EQ(r.capacity, c[2]);
    EXPECT_EQ(r.size, 0u);
  }
}

TEST(ZEL_IntArray, RandomEditsMatchVector) {
  std::mt19937 rng(12345);
  ZEL_IntArray a;
  std::vector<int> oracle;
  for (int step = 0; step < 3000; ++step) {
    const int value = static_cast<int>(rng() % 50) - 25;
    const std::uint64_t pos = step % 500 == 0 ? UINT64_MAX : rng() % (oracle.size() + 5);
    switch (rng() % 4) {
    case 0:
      a.Insert(pos, value);
      oracle.insert(oracle.begin() + static_cast<long>(std::min<std::uint64_t>(pos, oracle.size())),
                    value);
      break;
    case 1:
      a.Resize(pos % (oracle.size() + 3));
      oracle.resize(pos % (oracle.size() + 3));
      break;
    default:
      a.PushBack(value);
      oracle.push_back(value);
    }
    ASSERT_LE(a.size, a.capacity);
    ASSERT_EQ(Elements(a), oracle);
  }
  for (int v = -26; v <= 26; ++v) {
    SCOPED_TRACE(v);
    EXPECT_EQ(a.Count(v), static_cast<std::uint64_t>(std::count(oracle.begin(), oracle.end(), v)));
    EXPECT_EQ(a.Find(v), static_cast<std::uint64_t>(std::find(oracle.begin(), oracle.end(), v) -
                                                    oracle.begin()));
  }
  // Equality is element-wise over the sizes, whatever the capacities.
  ZEL_IntArray b(a);
  b.Reserve(a.capacity + 50);
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a != b);
  b[b.size - 1] += 1;
  EXPECT_FALSE(a == b);
  EXPECT_TRUE(a != b);
  b = a;
  b.PushBack(0);
  EXPECT_FALSE(a == b);
  b.Resize(a.size);
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(ZEL_IntArray() == ZEL_IntArray(std::uint64_t(0)));
  EXPECT_FALSE(ZEL_IntArray() == ZEL_IntArray(std::uint64_t(3))); // three zeros
  EXPECT_FALSE((ZEL_IntArray{1, 2} == ZEL_IntArray{2, 1}));
}

TEST(ZEL_IntArray, SortAndUniqueMatchTheStandardAlgorithms) {
  std::mt19937 rng(7);
  for (int round = 0; round < 20; ++round) {
    std::vector<int> values(rng() % 40);
    for (int& v : values)
      v = round % 2 ? static_cast<int>(rng()) : static_cast<int>(rng() % 10) - 5;
    if (round == 1)
      values.insert(values.end(), {-2147483647 - 1, 2147483647});
    SCOPED_TRACE(::testing::PrintToString(values));
    ZEL_IntArray s(values), u(values);
    s.Sort();
    u.Unique();
    std::sort(values.begin(), values.end());
    EXPECT_EQ(Elements(s), values);
    values.erase(std::unique(values.begin(), values.end()), values.end());
    EXPECT_EQ(Elements(u), values);
  }
}

TEST(ZEL_IntArray, CopiesAreDeepMovesLeaveTheSourceAllZero) {
  ZEL_IntArray a{1, 2};
  ZEL_IntArray b(a);
  EXPECT_EQ(b.capacity, 10u);
  b[0] = 99;
  EXPECT_EQ(a[0], 1);
  ZEL_IntArray c(std::uint64_t(30));
  c = a;
  EXPECT_EQ(c.capacity, 30u);
  c = static_cast<const ZEL_IntArray&>(c);
  EXPECT_EQ(Elements(c), (std::vector<int>{1, 2}));

  int* block = c.data;
  ZEL_IntArray d(std::move(c));
  EXPECT_EQ(d.data, block);
  EXPECT_EQ(d.size, 2u);
  EXPECT_TRUE(c.size == 0 && c.capacity == 0 && c.data == nullptr);
  // Move assignment frees the target's own block (the leak checker of the
  // sanitizer build would report it otherwise).
  ZEL_IntArray e{7, 8};
  e = std::move(d);
  EXPECT_EQ(e.data, block);
  EXPECT_TRUE(d.size == 0 && d.capacity == 0 && d.data == nullptr);
  ZEL_IntArray& alias = e;
  e = std::move(alias);
  EXPECT_EQ(Elements(e), (std::vector<int>{1, 2}));
}

TEST(ZEL_IntArray, ResizeZeroFillsRegrowthAndAssignHandlesOverlap) {
  ZEL_IntArray a;
  a.Resize(30);
  for (int i = 0; i < 30; ++i)
    a[i] = i + 1;
  a.Resize(2);
  EXPECT_EQ(a.capacity, 30u);
  // The old values 3..30 are still in the block; growing must hide them.
  a.Resize(5);
  EXPECT_EQ(Elements(a), (std::vector<int>{1, 2, 0, 0, 0}));

  const int source[] = {4, 5, 6, 7};
  ZEL_IntArray b;
  b.AssignRawDataCopy(source, 4);
  EXPECT_EQ(b.capacity, 10u);
  b.AssignRawDataCopy(b.data + 1, 3);
  EXPECT_EQ(Elements(b), (std::vector<int>{5, 6, 7}));
  b.AssignRawDataCopy(nullptr, 0);
  EXPECT_EQ(b.size, 0u);
  b.AssignRawDataCopy(source, 2);
  EXPECT_THROW(b.AssignRawDataCopy(nullptr, 3), ZEL_Failure);
  EXPECT_EQ(Elements(b), (std::vector<int>{4, 5}));
}

TEST(ZEL_IntArray, FailedAllocationThrowsLogsAndLeavesAnEmptyArray) {
  for (std::uint64_t request : {kUnallocatable, kByteOverflow}) {
    SCOPED_TRACE(request);
    const std::string message =
        "Failed to allocate memory for a integer array of size " + std::to_string(request);
    ZEL_IntArray a{1, 2, 3};
    ::testing::internal::CaptureStderr();
    const auto failure = tarn_test::FailureOf([&] { a.Reserve(request); });
    const std::string log = ::testing::internal::GetCapturedStderr();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->GetMessage(), message);
    EXPECT_EQ(failure->GetHeader(), "[%T|%n|%P|TarnUtilities|ZEL_IntArray] ");
    EXPECT_NE(log.find("|TarnUtilities|ZEL_IntArray] " + message), std::string::npos) << log;
    EXPECT_TRUE(a.size == 0 && a.capacity == 0 && a.data == nullptr);
    a.PushBack(1); // usable again
    EXPECT_EQ(a.capacity, 10u);
    EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_IntArray b(request); }),
              "Failed to allocate memory for an integer array of capacity " +
                  std::to_string(request));
  }
}

TEST(ZEL_IntArray, InstanceCounterFollowsLiveObjects) {
  const std::uint64_t start = ZEL_IntArray::s_InstanceCounter;
  {
    ZEL_IntArray a, b{1}, c(b), d(std::move(c));
    auto* e = new ZEL_IntArray(std::uint64_t(3));
    EXPECT_EQ(ZEL_IntArray::s_InstanceCounter, start + 5);
    delete e;
    EXPECT_EQ(ZEL_IntArray::s_InstanceCounter, start + 4);
  }
  EXPECT_EQ(ZEL_IntArray::s_InstanceCounter, start);
  // A constructor that fails leaves the counter alone.
  EXPECT_THROW(ZEL_IntArray failed(kUnallocatable), ZEL_Failure);
  EXPECT_EQ(ZEL_IntArray::s_InstanceCounter, start);
}
