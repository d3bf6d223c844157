//===- ZEL_CsvTableWriter_test.cpp - Wide CSV tables over several files -----===//
#include "TarnUtilities/text/ZEL_CsvTableWriter.h"
#include "TarnUtilities/text/CsvLineWriter.h"
#include "TarnUtilities/text/ZEL_CsvFileFailure.h"

#include "support/FailureOf.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using tarn_test::ReadFile;
using tarn_test::TempDir;
using tarn_test::Wide;

namespace {

// A line of `n` tokens "c0", "c1", ...
void FillLine(CsvLineWriter& line, int n, const std::string& prefix = "c") {
  line.Clear();
  for (int i = 0; i < n; ++i)
    line.AppendValue(prefix + std::to_string(i));
}

} // namespace

TEST(ZEL_CsvTableWriter, SplitsWideLinesOverNumberedFiles) {
  struct Case {
    int columns;
    std::vector<std::string> files;
  };
  const std::vector<Case> cases = {
      {7, {"c0, c1, c2\n", "c3, c4, c5\n", "c6\n"}},
      {6, {"c0, c1, c2\n", "c3, c4, c5\n", "\n"}}, // a multiple: the last file gets an empty line
      {2, {"c0, c1\n"}},
      {3, {"c0, c1, c2\n", "\n"}},
      {0, {"\n"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.columns);
    TempDir dir;
    CsvLineWriter line(1000, ", "); // a separator of two characters
    FillLine(line, c.columns);
    ZEL_CsvTableWriter table(dir / "results.csv", 3);
    table.AppendCsv(line);
    EXPECT_EQ(table.GetNumColumns(), c.columns);
    table.WriteToFile();
    for (std::size_t i = 0; i < c.files.size(); ++i) {
      const std::string name = i == 0 ? "results.csv" : "results_" + std::to_string(i) + ".csv";
      EXPECT_EQ(ReadFile(dir / name), c.files[i]) << name;
    }
    EXPECT_FALSE(
        std::filesystem::exists(dir / "results_" + std::to_string(c.files.size()) + ".csv"));
  }
}

TEST(ZEL_CsvTableWriter, NumberedNamesKeepTheExtensionAfterTheStem) {
  struct Case {
    std::string name, second;
  };
  const std::vector<Case> cases = {{"results.csv", "results_1.csv"},
                                   {"table", "table_1"},
                                   {"a.b.txt", "a.b_1.txt"},
                                   {"dir.d/plain", "dir.d/plain_1"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ZEL_CsvTableWriter table(c.name, 2);
    EXPECT_EQ(table.GetFileName(0), Wide(c.name));
    EXPECT_EQ(table.GetFileName(1), Wide(c.second));
  }
  ZEL_CsvTableWriter table(u"x.csv", 1);
  EXPECT_EQ(table.GetFileName(12), u"x_12.csv");
}

TEST(ZEL_CsvTableWriter, EachCallAppendsOneRowToEveryFile) {
  TempDir dir;
  // An existing file is appended to, a missing one created.
  tarn_test::WriteFile(dir / "t.csv", "header\n");
  CsvLineWriter line(1000, ";");
  ZEL_CsvTableWriter table(Wide(dir / "t.csv"), 2);
  ::testing::internal::CaptureStderr();
  for (int row = 0; row < 3; ++row) {
    FillLine(line, 3, "r" + std::to_string(row) + "c");
    table.AppendCsv(line);
    table.WriteToFile();
  }
  const std::string log = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(ReadFile(dir / "t.csv"), "header\nr0c0;r0c1\nr1c0;r1c1\nr2c0;r2c1\n");
  EXPECT_EQ(ReadFile(dir / "t_1.csv"), "r0c2\nr1c2\nr2c2\n");
  EXPECT_NE(log.find("Appending data to csv-file " + dir / "t.csv"), std::string::npos) << log;
  EXPECT_NE(log.find("Creating csv-file " + dir / "t_1.csv"), std::string::npos) << log;
  EXPECT_NE(log.find("Appending data to csv-file " + dir / "t_1.csv"), std::string::npos)
      << log;
  EXPECT_NE(log.find("|TarnUtilities|ZEL_Failure] "), std::string::npos) << log;
}

TEST(ZEL_CsvTableWriter, FirstLineFixesTheColumnsAndTheLastLineWins) {
  TempDir dir;
  CsvLineWriter first(1000, ",");
  CsvLineWriter second(1000, ",");
  FillLine(first, 2, "a");
  FillLine(second, 5, "b");
  ZEL_CsvTableWriter table(dir / "w.csv", 2);
  table.AppendCsv(first);
  table.AppendCsv(second);
  EXPECT_EQ(table.GetNumColumns(), 2);
  table.WriteToFile();
  // Two columns make two files of two columns; the later line's fifth
  // token has no place and is not written.
  EXPECT_EQ(ReadFile(dir / "w.csv"), "b0,b1\n");
  EXPECT_EQ(ReadFile(dir / "w_1.csv"), "b2,b3\n");
  EXPECT_FALSE(std::filesystem::exists(dir / "w_2.csv"));
}

TEST(ZEL_CsvTableWriter, MaximumBelowOneIsRefused) {
  for (int maximum : {0, -1}) {
    SCOPED_TRACE(maximum);
    try {
      ZEL_CsvTableWriter table("bad.csv", maximum);
      ADD_FAILURE() << "accepted";
    } catch (const ZEL_Failure& failure) {
      EXPECT_EQ(failure.GetMessage(),
                "The maximum number of columns per csv-file must be at least 1, not " +
                    std::to_string(maximum) + " (csv-file \"bad.csv\")");
    }
  }
}

TEST(ZEL_CsvTableWriter, UnopenableFileFailsWithFileIoStatus) {
  TempDir dir;
  CsvLineWriter line(100, ",");
  FillLine(line, 2);
  const std::string name = dir / "missing/out.csv";
  ZEL_CsvTableWriter table(name, 5);
  table.AppendCsv(line);
  try {
    table.WriteToFile();
    ADD_FAILURE() << "no failure";
  } catch (const ZEL_Failure& failure) {
    EXPECT_EQ(failure.GetMessage(), "Could not open csv-file \"" + name + "\" for writing!");
    EXPECT_EQ(failure.GetStatusCode(), ERR_FILE_IO);
    EXPECT_EQ(failure.GetName(), "ZEL_Failure");
    std::unique_ptr<ZEL_Exception> clone(failure.Clone());
    EXPECT_EQ(clone->GetStatusCode(), ERR_FILE_IO);
  }
}

TEST(ZEL_CsvTableWriter, RefusedWriteFails) {
  // /dev/full opens, and refuses the data when the file is closed.
  if (!std::filesystem::exists("/dev/full"))
    GTEST_SKIP() << "no /dev/full";
  CsvLineWriter line(100, ",");
  FillLine(line, 2);
  ZEL_CsvTableWriter table("/dev/full", 5);
  table.AppendCsv(line);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(tarn_test::FailureMessage([&] { table.WriteToFile(); }),
            "Could not write to csv-file \"/dev/full\"!");
  ::testing::internal::GetCapturedStderr();
}

TEST(ZEL_CsvTableWriter, FailureLaterInTheSetKeepsEarlierFiles) {
  TempDir dir;
  // The second file of the set cannot be opened: it is a directory.
  std::filesystem::create_directory(dir / "p_1.csv");
  CsvLineWriter line(100, ",");
  ZEL_CsvTableWriter table(dir / "p.csv", 2);
  FillLine(line, 4, "x");
  table.AppendCsv(line);
  EXPECT_THROW(table.WriteToFile(), ZEL_CsvFileFailure);
  FillLine(line, 4, "y");
  EXPECT_THROW(table.WriteToFile(), ZEL_Failure);
  EXPECT_EQ(ReadFile(dir / "p.csv"), "x0,x1\ny0,y1\n");
  EXPECT_FALSE(std::filesystem::exists(dir / "p_2.csv"));
  // Once the obstacle is gone, writing goes on where it is.
  std::filesystem::remove(dir / "p_1.csv");
  table.WriteToFile();
  EXPECT_EQ(ReadFile(dir / "p.csv"), "x0,x1\ny0,y1\ny0,y1\n");
  EXPECT_EQ(ReadFile(dir / "p_1.csv"), "y2,y3\n");
}
