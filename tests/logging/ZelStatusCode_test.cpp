//===- ZelStatusCode_test.cpp - Status codes and their texts ----------------===//
#include "TarnUtilities/logging/ZelStatusCode.h"

#include <gtest/gtest.h>

#include <climits>

TEST(ZelStatusCode, TextIsFoundByMagnitudeOrUnknown) {
  struct Case { int code; const char* text; };
  const Case cases[] = {
      {0, "STATUS_OK"}, {-1, "ERR_INTERNAL"}, {-3, "ERR_FILE_IO"}, {3, "ERR_FILE_IO"},
      {-7, "VTM_TABLE_NOT_FOUND"}, {-8, "ERR_NOT_FOUND"}, {-11, "ERR_INSUFFICIENT_RESULT_SPACE"},
      {-14, "ERR_USER"}, {-15, "ERR_PARFILE"}, {15, "ERR_PARFILE"}, {16, "UNKNOWN_STATUS"},
      {-16, "UNKNOWN_STATUS"}, {INT_MIN, "UNKNOWN_STATUS"}, {INT_MAX, "UNKNOWN_STATUS"}};
  for (const Case& c : cases)
    EXPECT_EQ(StatuscodeToText(c.code), c.text) << c.code;
  ZEL_StatusCode status; // the value class prints the number, not the name
  EXPECT_TRUE(status == STATUS_OK);
  status.Set(ERR_INVALID_ARGUMENT);
  EXPECT_TRUE(status == ERR_INVALID_ARGUMENT && status != STATUS_OK);
  EXPECT_EQ(status.ToString(), "-9");
  EXPECT_EQ(StatuscodeToText(status.Get()), "ERR_INVALID_ARGUMENT");
}
