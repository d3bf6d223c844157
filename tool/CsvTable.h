//===- tool/CsvTable.h - Numeric CSV tables for tarnutil --------*- C++ -*-===//
//
// Reads the CSV inputs of "tarnutil kmeans" and "tarnutil nearest": a table
// of finite numbers, one row per line, fields separated by commas, with an
// optional first line of column titles.
//
//   # nodes of the web        <- lines starting with '#' and blank lines are skipped
//   x, y, z                   <- a first line holding a field that is not a number: titles
//   0.0, 1.5, -2              <- every other line: as many numbers as the first line has fields
//
// Blanks around fields and a CR before the line end are ignored; titles may
// be in double quotes. Every failure is an InputError naming the file, the
// line and, for a bad field, its column.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTIL_CSVTABLE_H
#define TARNUTIL_CSVTABLE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnutil {

struct CsvTable {
  std::string fileName;
  /// Column titles; empty when the file has no title line.
  std::vector<std::string> titles;
  std::size_t numColumns = 0;
  /// The numbers row after row: row r, column c is values[r * numColumns + c].
  std::vector<double> values;
  /// The file's line number (from 1) of every row.
  std::vector<std::uint64_t> lineNumbers;

  std::size_t NumRows() const { return lineNumbers.size(); }
  double At(std::size_t row, std::size_t column) const { return values[row * numColumns + column]; }
  /// The position of the column named by `wanted`: a number from 1 or a
  /// title. An InputError when there is no such column.
  ///   titles (x, y, z): "2" => 1;  "z" => 2;  "w" => throws
  std::size_t FindColumn(const std::string& wanted) const;
};

/// Reads a table from fileName; shows progress for a large file on a terminal.
CsvTable ReadCsvTable(const std::string& fileName);

} // namespace tarnutil

#endif // TARNUTIL_CSVTABLE_H
