//===- TarnUtilities/text/ZEL_CsvTableLoader.h - Reading CSV tables -*- C++ -*-===//
//
// Loads a whole CSV table into memory: a titles row, then data rows, each a
// list of comma-separated fields. It reads what the library's CSV writers
// write (", " between values, numbers in their shortest round-trip text,
// "NaN" and "Inf") and common CSV from elsewhere:
//
//   * Fields are separated by ','; blanks and tabs around a field are
//     dropped. A field may be quoted with '"' (then it may hold ',' and
//     blanks, and "" stands for one '"'); a quoted field ends on its line.
//   * Line ends are "\n" or "\r\n"; a UTF-8 byte order mark is skipped;
//     lines holding only blanks are skipped.
//   * The first remaining line is the titles row; every data row must have
//     as many fields as it.
//
// Numbers are read with the library's own reading: integers must be 32-bit
// decimal integers, doubles are rounded correctly (TarnFormatUtil), and the
// words "nan", "inf" and "infinity" (any case, with a sign) are read too.
//
// Example:
//   ZEL_CsvTableLoader table(u"results.csv");   // "id, x\n1, 0.5\n2, 1.0e+5\n"
//   table.GetNumRows()          => 2
//   table.GetColTitle(1)        => "x"
//   ZEL_DoubleArray x;
//   table.GetRealColData(1, x); // (0.5, 100000.0)
//
// Failures throw: a file that cannot be read ZEL_CsvFileFailure (status
// ERR_FILE_IO); a malformed file, or a cell that is not a number of the
// kind asked for, ZEL_Failure (status ERR_USER) naming the file, the line
// and, for cells, the column (from 1) and its title. A failed Load or
// LoadText leaves the loader empty.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_ZEL_CSVTABLELOADER_H
#define TARNUTILITIES_TEXT_ZEL_CSVTABLELOADER_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <string>
#include <vector>

struct ZEL_IntArray;
struct ZEL_DoubleArray;

class TARN_API ZEL_CsvTableLoader {
public:
  /// An empty table: no columns, no rows.
  ZEL_CsvTableLoader() = default;
  /// Loads the file (UTF-16 name).
  explicit ZEL_CsvTableLoader(const std::u16string& fileName);

  /// Replaces the table by the file's (UTF-16 name).
  void Load(const std::u16string& fileName);
  /// Replaces the table by the one in `text`; `sourceName` (UTF-8) names it
  /// in messages.
  void LoadText(const std::string& text, const std::string& sourceName);

  /// Data rows, the titles row not counted.
  std::size_t GetNumRows() const { return rowLines_.size(); }
  std::size_t GetNumColumns() const { return titles_.size(); }

  /// @name Access by column, counted from 0
  /// A column that does not exist throws ZEL_Failure.
  /// @{
  const std::string& GetColTitle(std::size_t column) const;
  /// The field of a data row (from 0) without quotes; unchecked row.
  std::string GetCell(std::size_t row, std::size_t column) const;
  /// Replaces `values` by the column's fields read as integers.
  ///   "7", "-12", "+3" => 7, -12, 3;  "1.5", "", "3000000000" => failure
  void GetIntColData(std::size_t column, ZEL_IntArray& values) const;
  /// Replaces `values` by the column's fields read as doubles.
  ///   "0.1", "2", "1.0e+5", "NaN", "Inf" => 0.1, 2.0, 1e5, NaN, inf;  "", "x" => failure
  void GetRealColData(std::size_t column, ZEL_DoubleArray& values) const;
  /// @}

private:
  void CheckColumn(std::size_t column) const;
  [[noreturn]] void FailCell(std::size_t row, std::size_t column, const char* kind) const;
  const char* CellBegin(std::size_t row, std::size_t column, std::size_t& length) const;

  std::string sourceName_;              ///< UTF-8 name for messages
  std::vector<std::string> titles_;     ///< one per column
  std::string cells_;                   ///< the data fields, unquoted, each followed by a zero
  std::vector<std::size_t> cellEnds_;   ///< end of field i (row-major) in cells_, at its zero
  std::vector<std::size_t> rowLines_;   ///< line number (from 1) of each data row
};

#endif // TARNUTILITIES_TEXT_ZEL_CSVTABLELOADER_H
