//===- TarnStringUtil_ToDouble_test.cpp - Decimal text to double ------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

TEST(TarnStringUtilToDouble, SkipsBlanksAndIgnoresTrailingText) {
  struct Case { const char* text; double value; ZelStatusCode status; };
  const Case cases[] = {
      {"  -2e3", -2000.0, STATUS_OK}, {"\t\n\v\f\r 0.1xyz", 0.1, STATUS_OK},
      {" 7 8", 7.0, STATUS_OK},      {"1e", 1.0, STATUS_OK},   {" Inf", HUGE_VAL, STATUS_OK},
      {"-1e999", -HUGE_VAL, STATUS_OK}, {"", 0.0, ERR_NOT_FOUND}, {"+", 0.0, ERR_NOT_FOUND},
      {" -.", 0.0, ERR_NOT_FOUND},   {"e5", 0.0, ERR_NOT_FOUND},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("text '") + c.text + "'");
    double out = 99.0;
    EXPECT_EQ(TarnStringUtil::ToDouble(std::string(c.text), out), c.status);
    EXPECT_EQ(out, c.value);
    out = 99.0;
    EXPECT_EQ(TarnStringUtil::ToDouble(c.text, out), c.status);
    EXPECT_EQ(out, c.value);
  }
}

TEST(TarnStringUtilToDouble, NaNAndNullPointer) {
  double out = 1.0;
  EXPECT_EQ(TarnStringUtil::ToDouble(" NaN", out), STATUS_OK);
  EXPECT_TRUE(std::isnan(out));
  out = 1.0;
  EXPECT_EQ(TarnStringUtil::ToDouble(static_cast<const char*>(nullptr), out), ERR_NOT_FOUND);
  EXPECT_EQ(out, 0.0);
}

} // namespace
