//===- fortran/bench/csv_peer.cpp - The C++ side of the CSV benchmark -------===//
//
// Writes the same table as the Fortran side of tarn_fortran_bench, through
// TarnCsvFileWriter called directly from C++, so that the benchmark times
// both in one run: the difference is what the Fortran binding costs.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnCsvFileWriter.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <cstdint>
#include <string>

/// Writes rows x columns values (row-major) to the file `name` (length
/// `length`), one row per line; 0 on success, -1 if the file cannot be
/// written.
extern "C" std::int32_t tarn_bench_csv_cpp(const char* name, std::int32_t length, std::int32_t rows,
                                           std::int32_t columns, const double* values) {
  TarnCsvFileWriter csv;
  const std::u16string wide = TarnStringUtil::utf8_to_wide(std::string(name, length));
  if (!csv.OpenFile(wide.c_str(), TarnCsvFileWriter::FILE_CREATE))
    return -1;
  for (std::int32_t row = 0; row < rows; ++row) {
    for (std::int32_t column = 0; column < columns; ++column)
      csv.AppendReal(values[static_cast<std::size_t>(row) * columns + column]);
    if (!csv.FlushCsvLine())
      return -1;
  }
  return 0;
}
