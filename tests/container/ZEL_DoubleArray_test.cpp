//===- ZEL_DoubleArray_test.cpp - Growable array of doubles -----------------===//
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/logging/ZEL_Failure.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

std::vector<double> Elements(const ZEL_DoubleArray& a) {
  return std::vector<double>(a.data, a.data + a.size);
}

constexpr std::uint64_t kUnallocatable = std::uint64_t(1) << 59; // 4 EiB of doubles
constexpr std::uint64_t kByteOverflow = std::uint64_t(1) << 61;  // 2^64 bytes

} // namespace

TEST(ZEL_DoubleArray, PushBackGrowsByHalfFromOne) {
  ZEL_DoubleArray a;
  EXPECT_EQ(a.data, nullptr);
  std::vector<std::uint64_t> capacities;
  for (int i = 0; i < 30; ++i) {
    a.PushBack(i / 3.0);
    if (capacities.empty() || capacities.back() != a.capacity)
      capacities.push_back(a.capacity);
  }
  EXPECT_EQ(capacities, (std::vector<std::uint64_t>{1, 2, 3, 5, 8, 12, 18, 27, 41}));
  for (int i = 0; i < 30; ++i)
    EXPECT_EQ(a[i], i / 3.0) << "at " << i;
}

TEST(ZEL_DoubleArray, ReserveHasNoMinimumAndNeverShrinks) {
  ZEL_DoubleArray a;
  a.Reserve(0);
  EXPECT_EQ(a.capacity, 0u);
  EXPECT_EQ(a.data, nullptr);
  a.Reserve(3);
  EXPECT_EQ(a.capacity, 3u);
  a.Reserve(2);
  EXPECT_EQ(a.capacity, 3u);
  a.Reserve(4);
  EXPECT_EQ(a.capacity, 4u);
}

TEST(ZEL_DoubleArray, ResizeKeepsCapacityAndZeroFillsRegrowth) {
  ZEL_DoubleArray a;
  a.Resize(6);
  for (int i = 0; i < 6; ++i)
    a[i] = i + 0.5;
  a.Resize(1);
  EXPECT_EQ(a.capacity, 6u);
  a.Resize(4);
  EXPECT_EQ(Elements(a), (std::vector<double>{0.5, 0.0, 0.0, 0.0}));
}

TEST(ZEL_DoubleArray, RandomEditsMatchVector) {
  std::mt19937 rng(99);
  ZEL_DoubleArray a;
  std::vector<double> oracle;
  for (int step = 0; step < 2000; ++step) {
    const double value = static_cast<double>(rng()) / 7.0;
    const std::uint64_t pos = rng() % (oracle.size() + 4);
    switch (rng() % 3) {
    case 0:
      a.Insert(pos, value);
      oracle.insert(oracle.begin() + static_cast<long>(std::min<std::uint64_t>(pos, oracle.size())),
                    value);
      break;
    case 1:
      a.Resize(pos);
      oracle.resize(pos);
      break;
    default:
      a.PushBack(value);
      oracle.push_back(value);
    }
    ASSERT_LE(a.size, a.capacity);
  }
  EXPECT_EQ(Elements(a), oracle);
}

TEST(ZEL_DoubleArray, MovesLeaveTheSourceAllZero) {
  ZEL_DoubleArray a(std::vector<double>{1.0, 2.0, 3.0});
  double* block = a.data;
  ZEL_DoubleArray b(std::move(a));
  EXPECT_EQ(b.data, block);
  EXPECT_EQ(a.size, 0u);
  EXPECT_EQ(a.capacity, 0u);
  EXPECT_EQ(a.data, nullptr);

  ZEL_DoubleArray c(std::vector<double>{4.0});
  c = std::move(b);
  EXPECT_EQ(c.data, block);
  EXPECT_EQ(b.data, nullptr);
  ZEL_DoubleArray& alias = c;
  c = std::move(alias);
  EXPECT_EQ(Elements(c), (std::vector<double>{1.0, 2.0, 3.0}));
}

TEST(ZEL_DoubleArray, AssignRawDataCopyHandlesOverlapAndNull) {
  const double source[] = {1.0, 2.0, 3.0};
  ZEL_DoubleArray a;
  a.AssignRawDataCopy(source, 3);
  EXPECT_EQ(a.capacity, 3u);
  a.AssignRawDataCopy(a.data + 1, 2);
  EXPECT_EQ(Elements(a), (std::vector<double>{2.0, 3.0}));
  EXPECT_THROW(a.AssignRawDataCopy(nullptr, 1), ZEL_Failure);
  EXPECT_EQ(Elements(a), (std::vector<double>{2.0, 3.0}));
}

TEST(ZEL_DoubleArray, FailedReserveThrowsTheDoubleMessage) {
  for (std::uint64_t request : {kUnallocatable, kByteOverflow}) {
    SCOPED_TRACE(request);
    ZEL_DoubleArray a;
    ::testing::internal::CaptureStderr();
    try {
      a.Reserve(request);
      ADD_FAILURE() << "no failure";
    } catch (const ZEL_Failure& failure) {
      EXPECT_EQ(failure.GetMessage(),
                "Failed to allocate memory for a double array of size " + std::to_string(request));
      EXPECT_EQ(failure.GetHeader(), "[%T|%n|%P|TarnUtilities|ZEL_DoubleArray] ");
    }
    const std::string log = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("Failed to allocate memory for a double array of size"), std::string::npos)
        << log;
    EXPECT_EQ(a.data, nullptr);
    EXPECT_EQ(a.capacity, 0u);
  }
}

TEST(ZEL_DoubleArray, FailedReserveLetsGoOfTheOldBlockWithoutFreeingIt) {
  ZEL_DoubleArray a;
  a.PushBack(4.5);
  a.PushBack(5.5);
  double* kept = a.data;
  EXPECT_THROW(a.Reserve(kUnallocatable), ZEL_Failure);
  EXPECT_EQ(a.data, nullptr);
  EXPECT_EQ(a.size, 0u);
  EXPECT_EQ(a.capacity, 0u);
  // The block still holds the values and now belongs to whoever kept it.
  EXPECT_EQ(kept[0], 4.5);
  EXPECT_EQ(kept[1], 5.5);
  std::free(kept);
  a.PushBack(1.0);
  EXPECT_EQ(Elements(a), std::vector<double>{1.0});
}

TEST(ZEL_DoubleArray, InstanceCounterFollowsLiveObjects) {
  const std::uint64_t start = ZEL_DoubleArray::s_InstanceCounter;
  {
    ZEL_DoubleArray a;
    ZEL_DoubleArray b(a);
    ZEL_DoubleArray c(std::move(b));
    ZEL_DoubleArray d(std::vector<double>{1.0});
    EXPECT_EQ(ZEL_DoubleArray::s_InstanceCounter, start + 4);
  }
  EXPECT_EQ(ZEL_DoubleArray::s_InstanceCounter, start);
}
