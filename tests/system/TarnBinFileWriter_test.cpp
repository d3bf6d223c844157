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
  std::string expected(4 + 8 + 4 + 16, '\0');
  const std::int32_t seven = 7;
  std::memcpy(&expected[0], &seven, 4);
  std::memcpy(&expected[4], ints, 8);
  std::memcpy(&expected[12], floats, 4);
  std::memcpy(&expected[16], doubles, 16);
  EXPECT_EQ(ReadFile(dir / "a.bin"), expected);
  EXPECT_EQ(static_cast<unsigned char>(ReadFile(dir / "a.bin")[4 + 4]), 0x04) << "little-endian";
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
