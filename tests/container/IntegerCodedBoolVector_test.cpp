//===- IntegerCodedBoolVector_test.cpp - Thirty-two flags in an integer -----===//
#include "TarnUtilities/container/IntegerCodedBoolVector.h"

#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

TEST(IntegerCodedBoolVector, FlagsAreTheBitsOfTheCode) {
  std::mt19937 random(11);
  for (int trial = 0; trial < 200; ++trial) {
    const auto code = static_cast<std::int32_t>(random());
    const IntegerCodedBoolVector v(code);
    std::int32_t flags[IntegerCodedBoolVector::NUM_FLAGS];
    v.ToArray(flags);
    IntegerCodedBoolVector rebuilt;
    int set = 0;
    for (int i = 0; i < IntegerCodedBoolVector::NUM_FLAGS; ++i) {
      const bool bit = ((static_cast<std::uint32_t>(code) >> i) & 1u) != 0;
      ASSERT_EQ(v.Get(i), bit) << i;
      ASSERT_EQ(flags[i], bit ? 1 : 0) << i;
      rebuilt.Set(i, bit);
      set += bit;
      flags[i] *= -1; // Fortran's other convention for true
    }
    EXPECT_EQ(v.Count(), set);
    EXPECT_EQ(rebuilt.ToInt(), code);
    EXPECT_EQ(IntegerCodedBoolVector::FromArray(flags).ToInt(), code);
  }
  IntegerCodedBoolVector v(-1);
  v.Set(31, false);
  v.Set(0, false);
  EXPECT_EQ(v.ToInt(), 0x7FFFFFFE);
}

TEST(IntegerCodedBoolVector, FlagNumbersOutsideTheIntegerFail) {
  IntegerCodedBoolVector v;
  EXPECT_EQ(tarn_test::FailureMessage([&] { v.Get(32); }),
            "There is no flag 32: the flags are numbered 0 to 31");
  EXPECT_EQ(tarn_test::FailureMessage([&] { v.Set(-1, true); }),
            "There is no flag -1: the flags are numbered 0 to 31");
  EXPECT_EQ(v.ToInt(), 0);
}
