//===- TarnBinFileWriter_test.cpp - Numbers to a binary file ----------------===//
#include "TarnUtilities/system/TarnBinFileWriter.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

using tarn_test::ReadFile;
using tarn_test::TempDir;

TEST(TarnBinFileWriter, WritesTheBytesOfTheValuesOneAfterTheOther) {
  TempDir dir;
  const std::int32_t ints[] = {-1, 0x01020304};
  const float floats[] = {0.5f};
  const double doubles[] = {0.1, -2.0};
  {
    TarnBinFileWriter out;
    std::string error = "stale";
    ASSERT_TRUE(out.OpenFile(dir.Wide("a.bin"), error));
    EXPECT_EQ(error, "");
    EXPECT_FALSE(out.OpenFile(dir.Wide("b.bin"), error));
    EXPECT_EQ(error, "A file is already open");
    EXPECT_TRUE(out.WriteInt(7));
    EXPECT_TRUE(out.WriteIntArray(ints, 2));
    EXPECT_TRUE(out.WriteReal4Array(floats, 1));
    EXPECT_TRUE(out.WriteReal8Array(doubles, 2));
    EXPECT_TRUE(out.WriteReal8Array(nullptr, 0));
    EXPECT_FALSE(out.WriteIntArray(nullptr, 1));
  } // the destructor closes the file
  const std::string expected = std::string("\x07\0\0\0\xFF\xFF\xFF\xFF\x04\x03\x02\x01", 12) +
                               std::string(reinterpret_cast<const char*>(floats), 4) +
                               std::string(reinterpret_cast<const char*>(doubles), 16);
  EXPECT_EQ(ReadFile(dir / "a.bin"), expected);
}

TEST(TarnBinFileWriter, FailuresAreReturnedNotThrown) {
  TempDir dir;
  TarnBinFileWriter out;
  std::string error;
  EXPECT_FALSE(out.OpenFile(dir.Wide("missing/a.bin"), error));
  EXPECT_EQ(error, "No such file or directory");
  EXPECT_FALSE(out.IsOpen());
  EXPECT_FALSE(out.WriteInt(1));
  EXPECT_FALSE(out.WriteReal4Array(nullptr, 0));
  EXPECT_FALSE(out.CloseFile());
}
