//===- TarnCsvFileWriter_test.cpp - CSV lines to a file ---------------------===//
#include "TarnUtilities/text/TarnCsvFileWriter.h"

#include "text/CsvTestFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

using csvtest::ReadFile;
using csvtest::ScratchDir;
using csvtest::Wide;

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
  ScratchDir dir;
  const std::string path = dir.File("out.csv");
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
  ScratchDir dir;
  const std::string path = dir.File("log.csv");
  csvtest::WriteFile(path, "old line\n");
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

  const std::string fresh = dir.File("fresh.csv");
  ASSERT_TRUE(csv.OpenFile(Wide(fresh).c_str(), TarnCsvFileWriter::FILE_APPEND));
  csv.CloseFile();
  EXPECT_TRUE(std::filesystem::exists(fresh));
}

TEST(TarnCsvFileWriter, SecondOpenIsRefusedAndKeepsTheFirstFile) {
  ScratchDir dir;
  TarnCsvFileWriter csv;
  ASSERT_TRUE(csv.OpenFile(Wide(dir.File("a.csv")).c_str(), TarnCsvFileWriter::FILE_CREATE));
  csv.AppendInt(1);
  std::string error;
  EXPECT_FALSE(
      csv.OpenFile(Wide(dir.File("b.csv")).c_str(), error, TarnCsvFileWriter::FILE_CREATE));
  EXPECT_EQ(error, "A file is already open");
  EXPECT_FALSE(std::filesystem::exists(dir.File("b.csv")));
  EXPECT_TRUE(csv.IsOpen());
  EXPECT_TRUE(csv.FlushCsvLine());
  csv.CloseFile();
  EXPECT_EQ(ReadFile(dir.File("a.csv")), "1\n");
}

TEST(TarnCsvFileWriter, OpenFailureGivesTheSystemText) {
  ScratchDir dir;
  TarnCsvFileWriter csv;
  std::string error;
  EXPECT_FALSE(
      csv.OpenFile(Wide(dir.File("missing/x.csv")).c_str(), error, TarnCsvFileWriter::FILE_CREATE));
  EXPECT_EQ(error, "No such file or directory");
  EXPECT_FALSE(csv.IsOpen());
  EXPECT_FALSE(csv.OpenFile(Wide(dir.File("")).c_str(), error, TarnCsvFileWriter::FILE_APPEND));
  EXPECT_EQ(error, "Is a directory");
  EXPECT_FALSE(csv.OpenFile(nullptr, error, TarnCsvFileWriter::FILE_CREATE));
  EXPECT_EQ(error, "Invalid argument");
  // A failed open leaves the writer usable.
  ASSERT_TRUE(
      csv.OpenFile(Wide(dir.File("ok.csv")).c_str(), error, TarnCsvFileWriter::FILE_CREATE));
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

TEST(TarnCsvFileWriter, OpeningClearsTheLine) {
  ScratchDir dir;
  TarnCsvFileWriter csv;
  csv.AppendInt(5);
  ASSERT_TRUE(csv.OpenFile(Wide(dir.File("c.csv")).c_str(), TarnCsvFileWriter::FILE_CREATE));
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
  ::testing::internal::CaptureStderr();
  csv.CloseFile();
  ::testing::internal::GetCapturedStderr();
}

TEST(TarnCsvFileWriter, NonAsciiNamesAreWrittenAsUtf8) {
  ScratchDir dir;
  const std::u16string name = Wide(dir.File("")) + u"Gr\u00f6\u00dfe_\u03bb.csv";
  TarnCsvFileWriter csv;
  ASSERT_TRUE(csv.OpenFile(name.c_str(), TarnCsvFileWriter::FILE_CREATE));
  csv.WriteLine("1");
  csv.CloseFile();
  EXPECT_EQ(ReadFile(dir.File("Gr\xc3\xb6\xc3\x9f"
                              "e_\xce\xbb.csv")),
            "1\n");
}

TEST(TarnCsvFileWriter, TableReadsBackBitExact) {
  ScratchDir dir;
  const std::string path = dir.File("table.csv");
  std::mt19937_64 rng(77);
  std::vector<std::vector<double>> rows(300, std::vector<double>(10));
  {
    TarnCsvFileWriter csv;
    ASSERT_TRUE(csv.OpenFile(Wide(path).c_str(), TarnCsvFileWriter::FILE_CREATE));
    for (std::size_t r = 0; r < rows.size(); ++r) {
      csv.AppendInt(static_cast<int>(r) - 150);
      for (double& x : rows[r]) {
        // Random bit patterns cover subnormals and every exponent; the
        // first rows use decimal-looking values as a user would write.
        if (r < 100) {
          x = static_cast<double>(static_cast<std::int64_t>(rng() % 2000001) - 1000000) / 1000.0;
        } else {
          do {
            const std::uint64_t bits = rng();
            std::memcpy(&x, &bits, sizeof x);
          } while (!std::isfinite(x));
        }
        csv.AppendReal(x);
      }
      ASSERT_TRUE(csv.FlushCsvLine());
    }
  }
  const std::vector<std::string> lines = csvtest::ReadLines(path);
  ASSERT_EQ(lines.size(), rows.size());
  for (std::size_t r = 0; r < rows.size(); ++r) {
    const std::vector<std::string> tokens = csvtest::Split(lines[r], ", ");
    ASSERT_EQ(tokens.size(), 11u) << lines[r];
    EXPECT_EQ(tokens[0], std::to_string(static_cast<int>(r) - 150));
    for (std::size_t c = 0; c < 10; ++c) {
      SCOPED_TRACE(tokens[c + 1]);
      EXPECT_EQ(csvtest::Bits(csvtest::ParseDouble(tokens[c + 1])), csvtest::Bits(rows[r][c]));
    }
  }
}
