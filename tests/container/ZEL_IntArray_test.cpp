//===- ZEL_IntArray_test.cpp - Growable array of integers -------------------===//
#include "support/FailureOf.h"
#include "TarnUtilities/container/ZEL_IntArray.h"
#include "TarnUtilities/logging/ZEL_Failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
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

// How a C or Fortran caller sees the array: three plain fields.
struct ForeignIntArray {
  std::uint64_t size;
  std::uint64_t capacity;
  std::int32_t* data;
};

std::vector<int> Elements(const ZEL_IntArray& a) {
  return std::vector<int>(a.begin(), a.end());
}

// 2^60 ints (4 EiB) cannot be had; 2^62 ints overflow size_t when counted in
// bytes and must not wrap to a small request.
constexpr std::uint64_t kUnallocatable = std::uint64_t(1) << 60;
constexpr std::uint64_t kByteOverflow = std::uint64_t(1) << 62;

} // namespace

TEST(ZEL_IntArray, ForeignCallerReadsTheSameFields) {
  ZEL_IntArray a{4, 5, 6};
  ForeignIntArray view;
  static_assert(sizeof(view) == sizeof(a), "mirror must match");
  std::memcpy(&view, &a, sizeof(view));
  EXPECT_EQ(view.size, 3u);
  EXPECT_EQ(view.capacity, a.capacity);
  ASSERT_EQ(view.data, a.data);
  EXPECT_EQ(view.data[0], 4);
  EXPECT_EQ(view.data[2], 6);
}

TEST(ZEL_IntArray, PushBackGrowsByHalfFromTen) {
  ZEL_IntArray a;
  std::vector<std::uint64_t> capacities;
  for (int i = 0; i < 60; ++i) {
    a.PushBack(i * 7 - 100);
    if (capacities.empty() || capacities.back() != a.capacity)
      capacities.push_back(a.capacity);
  }
  EXPECT_EQ(capacities, (std::vector<std::uint64_t>{10, 15, 23, 35, 53, 80}));
  ASSERT_EQ(a.size, 60u);
  for (int i = 0; i < 60; ++i)
    EXPECT_EQ(a[i], i * 7 - 100) << "at " << i;
}

TEST(ZEL_IntArray, ReserveHasMinimumAndNeverShrinks) {
  struct Case {
    std::uint64_t before, request, after;
  };
  const Case cases[] = {{0, 0, 10},  {0, 3, 10},   {0, 10, 10}, {0, 11, 11},
                        {20, 5, 20}, {20, 20, 20}, {20, 21, 21}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.before) + " then " + std::to_string(c.request));
    ZEL_IntArray a;
    if (c.before)
      a.Reserve(c.before);
    a.Reserve(c.request);
    EXPECT_EQ(a.capacity, c.after);
    EXPECT_EQ(a.size, 0u);
    EXPECT_NE(a.data, nullptr);
  }
}

TEST(ZEL_IntArray, ResizeKeepsCapacityAndZeroFillsRegrowth) {
  ZEL_IntArray a;
  a.Resize(30);
  for (int i = 0; i < 30; ++i)
    a[i] = i + 1;
  a.Resize(2);
  EXPECT_EQ(a.capacity, 30u);
  EXPECT_EQ(Elements(a), (std::vector<int>{1, 2}));
  // The old values 3..30 are still in the block; growing must hide them.
  a.Resize(5);
  EXPECT_EQ(Elements(a), (std::vector<int>{1, 2, 0, 0, 0}));
  a.Resize(40);
  EXPECT_EQ(a.capacity, 40u);
  EXPECT_EQ(std::count(a.begin(), a.end(), 0), 38);
}

TEST(ZEL_IntArray, RandomEditsMatchVector) {
  std::mt19937 rng(12345);
  ZEL_IntArray a;
  std::vector<int> oracle;
  for (int step = 0; step < 3000; ++step) {
    const int value = static_cast<int>(rng() % 50) - 25;
    switch (rng() % 4) {
    case 0: {
      const std::uint64_t pos = rng() % (oracle.size() + 5);
      a.Insert(pos, value);
      oracle.insert(oracle.begin() + static_cast<long>(std::min<std::uint64_t>(pos, oracle.size())),
                    value);
      break;
    }
    case 1: {
      const std::uint64_t n = rng() % (oracle.size() + 3);
      a.Resize(n);
      oracle.resize(n);
      break;
    }
    default:
      a.PushBack(value);
      oracle.push_back(value);
    }
    ASSERT_LE(a.size, a.capacity);
  }
  ASSERT_EQ(Elements(a), oracle);
  for (int v = -26; v <= 26; ++v) {
    SCOPED_TRACE(v);
    EXPECT_EQ(a.Count(v), static_cast<std::uint64_t>(std::count(oracle.begin(), oracle.end(), v)));
    EXPECT_EQ(a.Find(v), static_cast<std::uint64_t>(std::find(oracle.begin(), oracle.end(), v) -
                                                    oracle.begin()));
  }
}

TEST(ZEL_IntArray, SortAndUniqueMatchTheStandardAlgorithms) {
  struct Case {
    std::vector<int> input, sorted, unique;
  };
  const std::vector<Case> cases = {
      {{3, 1, 3, 2, 1}, {1, 1, 2, 3, 3}, {1, 2, 3}},
      {{}, {}, {}},
      {{7}, {7}, {7}},
      {{2, 2, 2}, {2, 2, 2}, {2}},
      {{-2147483647 - 1, 2147483647, 0, -1},
       {-2147483647 - 1, -1, 0, 2147483647},
       {-2147483647 - 1, -1, 0, 2147483647}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.input));
    ZEL_IntArray s(c.input);
    s.Sort();
    EXPECT_EQ(Elements(s), c.sorted);
    ZEL_IntArray u(c.input);
    u.Unique();
    EXPECT_EQ(Elements(u), c.unique);
  }
  std::mt19937 rng(7);
  std::vector<int> values(500);
  for (int& v : values)
    v = static_cast<int>(rng() % 100);
  ZEL_IntArray u(values);
  u.Unique();
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
  EXPECT_EQ(Elements(u), values);
}

TEST(ZEL_IntArray, CopiesAreDeepAndReserveTheMinimum) {
  ZEL_IntArray a{1, 2};
  ZEL_IntArray b(a);
  EXPECT_EQ(b.capacity, 10u);
  EXPECT_NE(b.data, a.data);
  b[0] = 99;
  EXPECT_EQ(a[0], 1);

  ZEL_IntArray c(std::uint64_t(30));
  c = a;
  EXPECT_EQ(Elements(c), (std::vector<int>{1, 2}));
  EXPECT_EQ(c.capacity, 30u);
  const ZEL_IntArray& self = c;
  c = self;
  EXPECT_EQ(Elements(c), (std::vector<int>{1, 2}));
}

TEST(ZEL_IntArray, MovesLeaveTheSourceAllZero) {
  ZEL_IntArray a{1, 2, 3};
  int* block = a.data;
  ZEL_IntArray b(std::move(a));
  EXPECT_EQ(b.data, block);
  EXPECT_EQ(b.size, 3u);
  EXPECT_EQ(a.size, 0u);
  EXPECT_EQ(a.capacity, 0u);
  EXPECT_EQ(a.data, nullptr);

  // Move assignment frees the target's own block (the leak checker of the
  // sanitizer build would report it otherwise).
  ZEL_IntArray c{7, 8};
  c = std::move(b);
  EXPECT_EQ(c.data, block);
  EXPECT_EQ(Elements(c), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(b.data, nullptr);
  EXPECT_EQ(b.capacity, 0u);

  ZEL_IntArray& alias = c;
  c = std::move(alias);
  EXPECT_EQ(c.data, block);
  EXPECT_EQ(c.size, 3u);
}

TEST(ZEL_IntArray, AssignRawDataCopyHandlesOverlapAndNull) {
  const int source[] = {4, 5, 6, 7};
  ZEL_IntArray a;
  a.AssignRawDataCopy(source, 4);
  EXPECT_EQ(Elements(a), (std::vector<int>{4, 5, 6, 7}));
  EXPECT_EQ(a.capacity, 10u);

  a.AssignRawDataCopy(a.data + 1, 3);
  EXPECT_EQ(Elements(a), (std::vector<int>{5, 6, 7}));

  a.AssignRawDataCopy(nullptr, 0);
  EXPECT_EQ(a.size, 0u);

  a.AssignRawDataCopy(source, 2);
  EXPECT_THROW(a.AssignRawDataCopy(nullptr, 3), ZEL_Failure);
  EXPECT_EQ(Elements(a), (std::vector<int>{4, 5}));
}

TEST(ZEL_IntArray, FailedReserveThrowsAndLeavesAnEmptyArray) {
  struct Case {
    std::uint64_t request;
    const char* message;
  };
  const Case cases[] = {
      {kUnallocatable, "Failed to allocate memory for a integer array of size 1152921504606846976"},
      {kByteOverflow, "Failed to allocate memory for a integer array of size 4611686018427387904"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.request);
    ZEL_IntArray a{1, 2, 3};
    ::testing::internal::CaptureStderr();
    try {
      a.Reserve(c.request);
      ADD_FAILURE() << "no failure";
    } catch (const ZEL_Failure& failure) {
      EXPECT_EQ(failure.GetMessage(), c.message);
      EXPECT_EQ(failure.GetHeader(), "[%T|%n|%P|TarnUtilities|ZEL_IntArray] ");
    }
    const std::string log = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find(c.message), std::string::npos) << log;
    EXPECT_NE(log.find("|TarnUtilities|ZEL_IntArray] "), std::string::npos) << log;
    EXPECT_EQ(a.size, 0u);
    EXPECT_EQ(a.capacity, 0u);
    EXPECT_EQ(a.data, nullptr);
    a.PushBack(1); // usable again
    EXPECT_EQ(a.capacity, 10u);
  }
}

TEST(ZEL_IntArray, FailedCountedConstructorNamesTheCapacity) {
  for (std::uint64_t count : {kUnallocatable, kByteOverflow}) {
    SCOPED_TRACE(count);
    EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_IntArray a(count); }),
              "Failed to allocate memory for an integer array of capacity " + std::to_string(count));
  }
}

TEST(ZEL_IntArray, InstanceCounterFollowsLiveObjects) {
  const std::uint64_t start = ZEL_IntArray::s_InstanceCounter;
  {
    ZEL_IntArray a;
    ZEL_IntArray b{1};
    ZEL_IntArray c(b);
    ZEL_IntArray d(std::move(c));
    EXPECT_EQ(ZEL_IntArray::s_InstanceCounter, start + 4);
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

TEST(ZEL_IntArray, InsertClampsItsPosition) {
  struct Case {
    std::uint64_t position;
    std::vector<int> expected;
  };
  const Case cases[] = {{0, {9, 1, 2, 3}},
                        {1, {1, 9, 2, 3}},
                        {3, {1, 2, 3, 9}},
                        {4, {1, 2, 3, 9}},
                        {UINT64_MAX, {1, 2, 3, 9}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.position);
    ZEL_IntArray a{1, 2, 3};
    a.Insert(c.position, 9);
    EXPECT_EQ(Elements(a), c.expected);
  }
  ZEL_IntArray empty;
  empty.Insert(5, 4);
  EXPECT_EQ(Elements(empty), std::vector<int>{4});
}
