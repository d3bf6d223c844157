//===- TarnStringUtilDouble_test.cpp - Doubles through TarnStringUtil -----===//
#include "TarnUtilities/text/FloatingPointFormatter.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

TEST(TarnStringUtilDouble, FreeFormatWithDefaultAndOwnFormatter) {
  EXPECT_EQ(TarnStringUtil::String(0.1), "0.1");
  EXPECT_EQ(TarnStringUtil::String(-0.0), "-0.0");
  EXPECT_EQ(TarnStringUtil::String(100000.0), "1.0e+5");
  FloatingPointFormatter wide;
  wide.SetPosExpFmtSwitch(8);
  EXPECT_EQ(TarnStringUtil::String(100000.0, wide), "100000.0");
  EXPECT_EQ(TarnStringUtil::String(100000.0), "1.0e+5"); // the default is untouched
}

TEST(TarnStringUtilDouble, LimitedLengthAndFixedFields) {
  FloatingPointFormatter f;
  const struct { double x; size_t len; const char* text; const char* field; const char* fortran; } cases[] = {
      {3.14159265, 6, "3.1416", "3.1416", "3.1416"},
      {1.5e-7, 8, "1.5e-7", "  1.5e-7", " 1.5E-07"},
      {-2.5e12, 8, "-2.5e+12", "-2.5e+12", "-2.5E+12"},
      {123456.0, 3, "***", "***", "***"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(TarnStringUtil::String(c.x, c.len, f), c.text);
    EXPECT_EQ(TarnStringUtil::ToFixedFormat(c.x, c.len, f, false), c.field);
    EXPECT_EQ(TarnStringUtil::ToFixedFormat(c.x, c.len, f, true), c.fortran);
  }
}

TEST(TarnStringUtilDouble, DefaultFormatterIsSharedSafelyBetweenThreads) {
  std::vector<std::thread> threads;
  std::vector<int> bad(4, 0);
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([t, &bad] {
      for (int i = 1; i < 3000; ++i) {
        const double x = i * 0.37 + t;
        if (std::strtod(TarnStringUtil::String(x).c_str(), nullptr) != x)
          ++bad[t];
      }
    });
  for (auto& th : threads)
    th.join();
  EXPECT_EQ(bad, std::vector<int>(4, 0));
}
