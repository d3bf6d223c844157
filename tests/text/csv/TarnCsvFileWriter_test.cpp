//===- TarnCsvFileWriter_test.cpp - CSV lines to a file ---------------------===//
#include "TarnUtilities/text/TarnCsvFileWriter.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

using tarn_test::ReadFile;
using tarn_test::TempDir;
using tarn_test::Wide;

TEST(TarnCsvFileWriter, DefaultsToCommaBlankAnd16384Characters) {
  TarnCsvFileWriter csv;
  EXPECT_FALSE(csv.IsOpen());
  EXPECT_STREQ(csv.GetLineWriter().GetSeparator(), ", ");
  csv.AppendStr(std::string(16384, 'x').c_str());
  EXPECT_EQ(csv.GetLineWriter().GetCurrentLen(), 16384u);
  csv.ResetCsvLine();
  csv.AppendStr(std::string(16383, 'x').c_str());
  EXPECT_THROW(csv.AppendStr("yz"), std::runtime_error);

  TarnCsvFileWriter small(10);
  EXPECT_THROW(small.AppendInt(1), std::runtime_error);
}

TEST(TarnCsvFileWriter, WritesComposedLines) {
  TempDir dir;
  const std::string path = dir / "out.csv";
  {
    TarnCsvFileWriter csv;
    std::string error = "stale";
    ASSERT_TRUE(csv.OpenFile(Wide(path).c_str(), error, TarnCsvFileWriter::FILE_CREATE));
    EXPECT_TRUE(csv.IsOpen());
    EXPECT_EQ(error, "");
    csv.AppendStr("id");
    csv.AppendStr("value");
    EXPECT_TRUE(csv.FlushCsvLine());
    EXPECT_TRUE(csv.GetLineWriter().IsEmpty());
    csv.AppendInt(-3);
    csv.AppendReal(0.1);
    csv.AppendRealPrec(2.0, 0);
    EXPECT_TRUE(csv.FlushCsvLine());
    EXPECT_TRUE(csv.FlushCsvLine()); // an empty line
    EXPECT_TRUE(csv.WriteLine("# raw text"));
    EXPECT_TRUE(csv.WriteLine(nullptr));
  } // the destructor closes the file
  EXPECT_EQ(ReadFile(path), "id, value\n-3, 0.1, 2\n\n# raw text\n\n");
}

TEST(TarnCsvFileWriter, CreateTruncatesAndAppendAdds) {
  TempDir dir;
  const std::string path = dir / "log.csv";
  tarn_test::WriteFile(path, "old line\n");
  TarnCsvFileWriter csv;
  ASSERT_TRUE(csv.OpenFile(Wide(path).c_str(), TarnCsvFileWriter::FILE_APPEND));
  EXPECT_TRUE(csv.WriteLine("added"));
  csv.CloseFile();
  EXPECT_FALSE(csv.IsOpen());
  EXPECT_EQ(ReadFile(path), "old line\nadded\n");

  ASSERT_TRUE(csv.OpenFile(Wide(path).c_str(), TarnCsvFileWriter::FILE_CREATE));
  csv.AppendInt(1);
  csv.FlushCsvLine();
  csv.CloseFile();
  EXPECT_EQ(ReadFile(path), "1\n");

  const std::string fresh = dir / "fresh.csv";
  ASSERT_TRUE(csv.OpenFile(Wide(fresh).c_str(), TarnCsvFileWriter::FILE_APPEND));
  csv.CloseFile();
  EXPECT_TRUE(std::filesystem::exists(fresh));
}

TEST(TarnCsvFileWriter, SecondOpenIsRefusedAndKeepsTheFirstFile) {
  TempDir dir;
  TarnCsvFileWriter csv;
  ASSERT_TRUE(csv.OpenFile(Wide(dir / "a.csv").c_str(), TarnCsvFileWriter::FILE_CREATE));
  csv.AppendInt(1);
  std::string error;
  EXPECT_FALSE(
      csv.OpenFile(Wide(dir / "b.csv").c_str(), error, TarnCsvFileWriter::FILE_CREATE));
  EXPECT_EQ(error, "A file is already open");
  EXPECT_FALSE(std::filesystem::exists(dir / "b.csv"));
  EXPECT_TRUE(csv.IsOpen());
  EXPECT_TRUE(csv.FlushCsvLine());
  csv.CloseFile();
  EXPECT_EQ(ReadFile(dir / "a.csv"), "1\n");
}

TEST(TarnCsvFileWriter, OpenFailureGivesTheSystemText) {
  TempDir dir;
  TarnCsvFileWriter csv;
  std::string error;
  EXPECT_FALSE(
      csv.OpenFile(Wide(dir / "missing/x.csv").c_str(), error, TarnCsvFileWriter::FILE_CREATE));
  EXPECT_EQ(error, "No such file or directory");
  EXPECT_FALSE(csv.IsOpen());
  EXPECT_FALSE(csv.OpenFile(Wide(dir / "").c_str(), error, TarnCsvFileWriter::FILE_APPEND));
  EXPECT_EQ(error, "Is a directory");
  EXPECT_FALSE(csv.OpenFile(nullptr, error, TarnCsvFileWriter::FILE_CREATE));
  EXPECT_EQ(error, "Invalid argument");
  // A failed open leaves the writer usable.
  ASSERT_TRUE(
      csv.OpenFile(Wide(dir / "ok.csv").c_str(), error, TarnCsvFileWriter::FILE_CREATE));
}

TEST(TarnCsvFileWriter, WithoutAFileNothingIsWrittenAndTheLineIsKept) {
  TarnCsvFileWriter csv;
  csv.AppendInt(5);
  EXPECT_FALSE(csv.FlushCsvLine());
  EXPECT_STREQ(csv.GetLineWriter().GetLine(), "5");
  EXPECT_FALSE(csv.WriteLine("x"));
  csv.CloseFile(); // closing without a file only clears the line
  EXPECT_TRUE(csv.GetLineWriter().IsEmpty());
}

TEST(TarnCsvFileWriter, FailedWriteStillClearsTheLine) {
  // /dev/full accepts the open and refuses every write that reaches it; a
  // line larger than the stream's buffer reaches it at once.
  if (!std::filesystem::exists("/dev/full"))
    GTEST_SKIP() << "no /dev/full";
  TarnCsvFileWriter csv(300000);
  ASSERT_TRUE(csv.OpenFile(u"/dev/full", TarnCsvFileWriter::FILE_CREATE));
  csv.AppendStr(std::string(200000, 'x').c_str());
  EXPECT_FALSE(csv.FlushCsvLine());
  EXPECT_TRUE(csv.GetLineWriter().IsEmpty());
  EXPECT_FALSE(csv.WriteLine(std::string(200000, 'y').c_str()));
  ::testing::internal::CaptureStderr();
  csv.CloseFile();
  ::testing::internal::GetCapturedStderr();
}

TEST(TarnCsvFileWriter, NonAsciiNamesAreWrittenAsUtf8) {
  TempDir dir;
  const std::u16string name = Wide(dir / "") + u"Gr\u00f6\u00dfe_\u03bb.csv";
  TarnCsvFileWriter csv;
  ASSERT_TRUE(csv.OpenFile(name.c_str(), TarnCsvFileWriter::FILE_CREATE));
  csv.WriteLine("1");
  csv.CloseFile();
  EXPECT_EQ(ReadFile(dir / "Gr\xc3\xb6\xc3\x9f"
                              "e_\xce\xbb.csv"),
            "1\n");
}

