//===- TarnUtilities/text/ZEL_CsvTableWriter.h - Wide CSV tables -*- C++ -*-===//
//
// Appends composed CSV lines to a set of files, splitting a line that is
// wider than the per-file maximum column-wise: with a maximum of 3, a line
// of 7 tokens goes to results.csv (tokens 0-2), results_1.csv (3-5) and
// results_2.csv (6). Each WriteToFile appends one line to every file of the
// set, creating files that do not exist yet; no file is kept open between
// calls.
//
// The number of files is fixed by the token count of the first line given:
// columns / maximum + 1. When the count is a multiple of the maximum the
// last file receives empty lines (6 tokens, maximum 3: three files, the
// third with "\n" only), so that readers can rely on the file set.
//
// Example:
//   CsvLineWriter line(1000, ",");
//   ZEL_CsvTableWriter table("results.csv", 3);
//   for (const Row& row : rows) {
//     line.SetList(row.values);
//     table.AppendCsv(line);
//     table.WriteToFile();
//   }
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_ZEL_CSVTABLEWRITER_H
#define TARNUTILITIES_TEXT_ZEL_CSVTABLEWRITER_H

#include "TarnUtilities/Export.h"

#include <cstdint>
#include <string>

class CsvLineWriter;

class TARN_API ZEL_CsvTableWriter {
public:
  /// A table written to `fileName` (UTF-16) and its numbered siblings, with
  /// at most `maxColumnsPerFile` tokens per file. A maximum below 1 throws
  /// ZEL_Failure.
  ZEL_CsvTableWriter(const std::u16string& fileName, std::int32_t maxColumnsPerFile);
  /// The same with a UTF-8 file name.
  ZEL_CsvTableWriter(const std::string& fileName, std::int32_t maxColumnsPerFile);
  ZEL_CsvTableWriter(const ZEL_CsvTableWriter&) = default;
  ZEL_CsvTableWriter& operator=(const ZEL_CsvTableWriter&) = default;

  /// Remembers the line writer (not owned; the last one given wins). The
  /// first line given fixes the number of columns.
  void AppendCsv(CsvLineWriter& line);
  /// Appends the remembered line to every file of the set; nothing if no
  /// line was given. Throws ZEL_CsvFileFailure (a ZEL_Failure with status
  /// ERR_FILE_IO) when a file cannot be opened or written; the files before
  /// it keep their new line, the files after it are not touched.
  void WriteToFile();

  /// Token count of the first line given, 0 before.
  std::int32_t GetNumColumns() const { return numColumns_; }
  /// Name of file `index` of the set: the name as given for 0, else
  /// stem + "_" + index + extension ("a/results_2.csv").
  std::u16string GetFileName(std::int32_t index) const;

private:
  CsvLineWriter* line_ = nullptr;
  std::u16string fileName_;
  std::int32_t numColumns_ = 0;
  std::int32_t maxColumnsPerFile_;
};

#endif // TARNUTILITIES_TEXT_ZEL_CSVTABLEWRITER_H
