//===- ZEL_CsvTableLoader_test.cpp - Reading CSV tables ---------------------===//
#include "TarnUtilities/text/ZEL_CsvTableLoader.h"
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/container/ZEL_IntArray.h"
#include "TarnUtilities/text/TarnCsvFileWriter.h"
#include "TarnUtilities/text/ZEL_CsvFileFailure.h"

#include "support/FailureOf.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

using tarn_test::FailureMessage;
using tarn_test::FailureOf;
using tarn_test::TempDir;

namespace {

std::uint64_t Bits(double x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

std::vector<std::string> Column(const ZEL_CsvTableLoader& table, std::size_t column) {
  std::vector<std::string> cells;
  for (std::size_t row = 0; row < table.GetNumRows(); ++row)
    cells.push_back(table.GetCell(row, column));
  return cells;
}

} // namespace

// What the file writer writes, random doubles of every kind included, reads
// back bit for bit.
TEST(ZEL_CsvTableLoader, ReadsBackWhatTheFileWriterWrites) {
  TempDir dir;
  std::mt19937_64 random(7);
  std::vector<int> ints;
  std::vector<double> doubles;
  {
    TarnCsvFileWriter csv;
    ASSERT_TRUE(csv.OpenFile(dir.Wide("t.csv").c_str(), TarnCsvFileWriter::FILE_CREATE));
    csv.GetLineWriter().SetInfNanFlag(false);
    csv.WriteLine("id, \"x, as written\"");
    for (int row = 0; row < 2000; ++row) {
      ints.push_back(static_cast<int>(random()));
      std::uint64_t bits = random();
      double x;
      std::memcpy(&x, &bits, sizeof x);
      if (row % 500 == 1)
        x = std::numeric_limits<double>::infinity();
      doubles.push_back(x);
      csv.AppendInt(ints.back());
      csv.AppendReal(x);
      ASSERT_TRUE(csv.FlushCsvLine());
    }
  }
  const ZEL_CsvTableLoader table(dir.Wide("t.csv"));
  ASSERT_EQ(table.GetNumRows(), ints.size());
  ASSERT_EQ(table.GetNumColumns(), 2u);
  EXPECT_EQ(table.GetColTitle(1), "x, as written");
  ZEL_IntArray readInts;
  table.GetIntColData(0, readInts);
  EXPECT_EQ(std::vector<int>(readInts.begin(), readInts.end()), ints);
  ZEL_DoubleArray readDoubles;
  table.GetRealColData(1, readDoubles);
  ASSERT_EQ(readDoubles.size, doubles.size());
  for (std::size_t i = 0; i < doubles.size(); ++i)
    if (std::isnan(doubles[i]))
      EXPECT_TRUE(std::isnan(readDoubles[i])) << i;
    else
      EXPECT_EQ(Bits(readDoubles[i]), Bits(doubles[i])) << i;
}

TEST(ZEL_CsvTableLoader, SplitsFieldsAsCsvDoes) {
  struct Case {
    const char* text;
    std::vector<std::string> titles;
    std::vector<std::string> firstColumn;
  };
  const Case cases[] = {
      {"a,b\n1,2\n", {"a", "b"}, {"1"}},
      {"\xEF\xBB\xBF a , b \r\n\r\n 1 ,2\r\n  \t\n3,4", {"a", "b"}, {"1", "3"}},
      {"\"x, y\",\"say \"\"hi\"\"\"\n\" 1 \" , 2\n", {"x, y", "say \"hi\""}, {" 1 "}},
      {"a,\n,\n", {"a", ""}, {""}},
      {"a \"b\" c\n1\n", {"a \"b\" c"}, {"1"}},
      {"", {}, {}},
      {"\n \n", {}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    ZEL_CsvTableLoader table;
    table.LoadText(c.text, "mem.csv");
    ASSERT_EQ(table.GetNumColumns(), c.titles.size());
    for (std::size_t i = 0; i < c.titles.size(); ++i)
      EXPECT_EQ(table.GetColTitle(i), c.titles[i]);
    if (!c.titles.empty())
      EXPECT_EQ(Column(table, 0), c.firstColumn);
  }
}

TEST(ZEL_CsvTableLoader, ReadsNumbersOfEveryForm) {
  ZEL_CsvTableLoader table;
  table.LoadText("i, x\n+7, 0.1\n-0, -Inf\n2147483647, NaN\n-2147483648, 1e999\n", "m.csv");
  ZEL_IntArray ints;
  table.GetIntColData(0, ints);
  EXPECT_EQ(std::vector<int>(ints.begin(), ints.end()),
            (std::vector<int>{7, 0, 2147483647, -2147483647 - 1}));
  ZEL_DoubleArray x;
  table.GetRealColData(1, x);
  EXPECT_EQ(x[0], 0.1);
  EXPECT_EQ(x[1], -HUGE_VAL);
  EXPECT_TRUE(std::isnan(x[2]));
  EXPECT_EQ(x[3], HUGE_VAL);
  table.GetRealColData(0, x); // integers read as doubles too
  EXPECT_EQ(x[3], -2147483648.0);
}

TEST(ZEL_CsvTableLoader, MalformedFilesAndCellsNameFileLineAndColumn) {
  struct Case {
    const char* text;
    int intColumn; // -1: the failure comes from loading
    const char* message;
  };
  const Case cases[] = {
      {"a,b\n1,2\n\n3\n", -1, "csv-file \"m.csv\", line 4: 1 fields where the titles row has 2"},
      {"a\n\"open\n", -1, "csv-file \"m.csv\", line 2: a quoted field is not closed on its line"},
      {"\"a\" x,b\n", -1,
       "csv-file \"m.csv\", line 1: characters follow a quoted field before the next ','"},
      {"a,b\n1,2\n3,1.5\n", 1, "csv-file \"m.csv\", line 3, column 2 (\"b\"): \"1.5\" is not an integer"},
      {"a\n2147483648\n", 0,
       "csv-file \"m.csv\", line 2, column 1 (\"a\"): \"2147483648\" is not a 32-bit integer"},
      {"a\n\n\n\n", 0, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    ZEL_CsvTableLoader table;
    if (c.intColumn < 0) {
      EXPECT_EQ(FailureMessage([&] { table.LoadText(c.text, "m.csv"); }), c.message);
      EXPECT_EQ(table.GetNumColumns(), 0u);
      continue;
    }
    table.LoadText(c.text, "m.csv");
    ZEL_IntArray ints;
    EXPECT_EQ(FailureMessage([&] { table.GetIntColData(c.intColumn, ints); }),
              c.message ? c.message : "<no failure>");
  }
  ZEL_CsvTableLoader table;
  table.LoadText("a,b\nx,\n", "m.csv");
  ZEL_DoubleArray x;
  EXPECT_EQ(FailureMessage([&] { table.GetRealColData(0, x); }),
            "csv-file \"m.csv\", line 2, column 1 (\"a\"): \"x\" is not a number");
  EXPECT_EQ(FailureMessage([&] { table.GetRealColData(1, x); }),
            "csv-file \"m.csv\", line 2, column 2 (\"b\"): \"\" is not a number");
  EXPECT_EQ(FailureMessage([&] { table.GetColTitle(2); }),
            "csv-file \"m.csv\" has no column with index 2: it has 2 columns");
}

TEST(ZEL_CsvTableLoader, MissingFileIsAFileError) {
  TempDir dir;
  ZEL_CsvTableLoader table;
  table.LoadText("a\n1\n", "m.csv");
  try {
    table.Load(dir.Wide("missing.csv"));
    FAIL() << "no failure";
  } catch (const ZEL_Exception& e) {
    EXPECT_EQ(e.GetStatusCode(), ERR_FILE_IO);
    EXPECT_EQ(e.GetMessage(), "Could not open csv-file \"" + (dir / "missing.csv") +
                                  "\" for reading: No such file or directory");
  }
  EXPECT_EQ(table.GetNumColumns(), 0u);
  EXPECT_EQ(table.GetNumRows(), 0u);
}
