//===- ZEL_DoubleArray_test.cpp - Growable array of doubles -----------------===//
//
// Random edits against std::vector carry the contents; the rest checks the
// growth without a minimum, ownership of the block and allocation failures.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
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

TEST(ZEL_DoubleArray, PushBackGrowsByHalfFromOneAndReserveHasNoMinimum) {
  ZEL_DoubleArray a;
  EXPECT_EQ(a.data, nullptr);
  std::vector<std::uint64_t> capacities;
  for (int i = 0; i < 30; ++i) {
    a.PushBack(i / 3.0);
    if (capacities.empty() || capacities.back() != a.capacity)
      capacities.push_back(a.capacity);
  }
  EXPECT_EQ(capacities, (std::vector<std::uint64_t>{1, 2, 3, 5, 8, 12, 18, 27, 41}));
  ZEL_DoubleArray r;
  r.Reserve(0);
  EXPECT_TRUE(r.capacity == 0 && r.data == nullptr);
  r.Reserve(3);
  r.Reserve(2);
  r.Resize(1);
  EXPECT_EQ(r.capacity, 3u);
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
    ASSERT_EQ(Elements(a), oracle);
  }
}

TEST(ZEL_DoubleArray, MovesLeaveTheSourceAllZeroAndAssignHandlesOverlap) {
  ZEL_DoubleArray a(std::vector<double>{1.0, 2.0, 3.0});
  double* block = a.data;
  ZEL_DoubleArray b(std::move(a));
  EXPECT_EQ(b.data, block);
  EXPECT_TRUE(a.size == 0 && a.capacity == 0 && a.data == nullptr);
  ZEL_DoubleArray c(std::vector<double>{4.0});
  c = std::move(b);
  EXPECT_EQ(c.data, block);
  EXPECT_EQ(b.data, nullptr);
  ZEL_DoubleArray& alias = c;
  c = std::move(alias);
  EXPECT_EQ(Elements(c), (std::vector<double>{1.0, 2.0, 3.0}));

  const double source[] = {1.0, 2.0, 3.0};
  ZEL_DoubleArray d;
  d.AssignRawDataCopy(source, 3);
  EXPECT_EQ(d.capacity, 3u);
  d.AssignRawDataCopy(d.data + 1, 2);
  EXPECT_EQ(Elements(d), (std::vector<double>{2.0, 3.0}));
  EXPECT_THROW(d.AssignRawDataCopy(nullptr, 1), ZEL_Failure);
  EXPECT_EQ(Elements(d), (std::vector<double>{2.0, 3.0}));
}

TEST(ZEL_DoubleArray, FailedReserveLetsGoOfTheOldBlockWithoutFreeingIt) {
  for (std::uint64_t request : {kUnallocatable, kByteOverflow}) {
    SCOPED_TRACE(request);
    ZEL_DoubleArray a;
    a.PushBack(4.5);
    a.PushBack(5.5);
    double* kept = a.data;
    ::testing::internal::CaptureStderr();
    const auto failure = tarn_test::FailureOf([&] { a.Reserve(request); });
    const std::string log = ::testing::internal::GetCapturedStderr();
    const std::string message =
        "Failed to allocate memory for a double array of size " + std::to_string(request);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->GetMessage(), message);
    EXPECT_EQ(failure->GetHeader(), "[%T|%n|%P|TarnUtilities|ZEL_DoubleArray] ");
    EXPECT_NE(log.find(message), std::string::npos) << log;
    EXPECT_TRUE(a.size == 0 && a.capacity == 0 && a.data == nullptr);
    // The block still holds the values and now belongs to whoever kept it.
    EXPECT_EQ(kept[1], 5.5);
    std::free(kept);
    a.PushBack(1.0);
    EXPECT_EQ(Elements(a), std::vector<double>{1.0});
  }
}

TEST(ZEL_DoubleArray, InstanceCounterFollowsLiveObjects) {
  const std::uint64_t start = ZEL_DoubleArray::s_InstanceCounter;
  {
    ZEL_DoubleArray a, b(a), c(std::move(b)), d(std::vector<double>{1.0});
    EXPECT_EQ(ZEL_DoubleArray::s_InstanceCounter, start + 4);
  }
  EXPECT_EQ(ZEL_DoubleArray::s_InstanceCounter, start);
}
