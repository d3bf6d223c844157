//===- ZEL_FixedBufferComposer_test.cpp - Bounded composition -------------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/ZEL_FixedBufferComposer.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>

namespace {

/// Runs `append` on a composer holding "ab" with `room` characters left and
/// expects the failure message and the text kept.
void ExpectRefused(size_t room, const std::function<void(ZEL_FixedBufferComposer&)>& append,
                   const char* message) {
  ZEL_FixedBufferComposer c(2 + room);
  c.Append("ab");
  try {
    append(c);
    ADD_FAILURE() << "no failure, text " << c.GetString();
  } catch (const ZEL_Failure& f) {
    EXPECT_STREQ(f.what(), message);
    EXPECT_EQ(f.GetStatusCode(), ERR_INTERNAL);
  }
  EXPECT_EQ(c.GetString(), "ab");
  EXPECT_STREQ(c.GetBuffer(), "ab");
}

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

} // namespace

TEST(ZEL_FixedBufferComposer, ComposesNumbersAndText) {
  ZEL_FixedBufferComposer c(64);
  c.Append(-42);
  c.Append(", ");
  c.Append(0.1);
  c.Append(',');
  c.Append(std::string(" "));
  c.Append(0.1f);
  c.Append(' ');
  c.AppendFixed(2.5, 2);
  c.Append(' ');
  c.AppendRounded(2.5, 3);
  c.Append(' ');
  c.AppendScientific(12345.0, 2);
  c.Append(' ');
  c.Append(100000.0);
  EXPECT_EQ(c.GetString(), "-42, 0.1, 0.1 2.50 2.5 1.23e+4 1.0e+5");
  EXPECT_EQ(c.GetLength(), c.GetString().size());
  c.Reset();
  EXPECT_EQ(c.GetString(), "");
  EXPECT_EQ(c.GetCapacity(), 64u);
}

TEST(ZEL_FixedBufferComposer, FillsExactlyToCapacity) {
  ZEL_FixedBufferComposer c(5);
  c.Append(1.5); // 3
  c.Append("ab"); // 5
  EXPECT_EQ(c.GetString(), "1.5ab");
  EXPECT_THROW(c.Append('x'), ZEL_Failure);
  ZEL_FixedBufferComposer copy(c);
  ZEL_FixedBufferComposer assigned(1);
  assigned = c;
  c.Reset();
  EXPECT_EQ(copy.GetString(), "1.5ab");
  EXPECT_EQ(assigned.GetString(), "1.5ab");
  EXPECT_EQ(assigned.GetCapacity(), 5u);
}

TEST(ZEL_FixedBufferComposer, RefusesWhatDoesNotFitAndKeepsItsText) {
  ExpectRefused(2, [](ZEL_FixedBufferComposer& c) { c.Append(123); },
                "Out of space in the buffer while printing an integer.");
  ExpectRefused(3, [](ZEL_FixedBufferComposer& c) { c.Append(0.125); },
                "Out of space in the buffer while printing a double in free format.");
  ExpectRefused(3, [](ZEL_FixedBufferComposer& c) { c.Append(0.125f); },
                "Out of space in the buffer while printing a double in free format.");
  ExpectRefused(3, [](ZEL_FixedBufferComposer& c) { c.AppendFixed(1.5, 3); },
                "Out of space in the buffer while printing a double in fixed-format.");
  ExpectRefused(3, [](ZEL_FixedBufferComposer& c) { c.AppendScientific(1.5, 1); },
                "Out of space in the buffer while printing a double in scientific-format.");
  ExpectRefused(2, [](ZEL_FixedBufferComposer& c) { c.AppendRounded(1.25, 3); },
                "Out of space in the buffer while printing a rounded double in fixed-format.");
  ExpectRefused(0, [](ZEL_FixedBufferComposer& c) { c.Append('x'); },
                "Out of space in the buffer while adding a character.");
  ExpectRefused(2, [](ZEL_FixedBufferComposer& c) { c.Append("xyz"); },
                "Out of space in the buffer while adding a string.");
  ExpectRefused(2, [](ZEL_FixedBufferComposer& c) { c.Append(std::string("xyz")); },
                "Out of space in the buffer while adding a string.");
}

TEST(ZEL_FixedBufferComposer, RefusesNaNAndInfinity) {
  const size_t room = 50;
  ExpectRefused(room, [](ZEL_FixedBufferComposer& c) { c.Append(kNaN); },
                "Attempted to print a NaN-value in free format.");
  ExpectRefused(room, [](ZEL_FixedBufferComposer& c) { c.Append(-kInf); },
                "Attempted to print an Inf-value in free format.");
  ExpectRefused(room, [](ZEL_FixedBufferComposer& c) { c.Append(std::numeric_limits<float>::infinity()); },
                "Attempted to print an Inf-value in free format.");
  ExpectRefused(room, [](ZEL_FixedBufferComposer& c) { c.AppendFixed(kNaN, 2); },
                "Attempted to print a NaN-value in fixed format.");
  ExpectRefused(room, [](ZEL_FixedBufferComposer& c) { c.AppendRounded(kInf, 2); },
                "Attempted to print an Inf-value in fixed format.");
  ExpectRefused(room, [](ZEL_FixedBufferComposer& c) { c.AppendScientific(kNaN, 2); },
                "Attempted to print a NaN-value in scientific-format.");
  ExpectRefused(room, [](ZEL_FixedBufferComposer& c) { c.AppendScientific(kInf, 2); },
                "Attempted to print an Inf-value in scientific-format.");
}

TEST(ZEL_FixedBufferComposer, NullTextAndZeroCapacity) {
  ZEL_FixedBufferComposer c(0);
  c.Append(static_cast<const char*>(nullptr));
  c.Append("");
  EXPECT_EQ(c.GetString(), "");
  EXPECT_THROW(c.Append(1), ZEL_Failure);
}
