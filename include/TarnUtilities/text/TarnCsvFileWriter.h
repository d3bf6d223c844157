//===- TarnUtilities/text/TarnCsvFileWriter.h - CSV lines to a file -*- C++ -*-===//
//
// Writes CSV text to a file line by line: values are appended to an owned
// CsvLineWriter whose separator is ", " (comma and blank), and FlushCsvLine
// writes the composed line with "\n". File errors are reported through
// return values and an error text, never by exceptions; only a value that
// does not fit into the line (or a refused NaN/Inf) throws, from the line
// writer.
//
// Example:
//   TarnCsvFileWriter csv;                      // line capacity 16384
//   std::string error;
//   if (!csv.OpenFile(u"out.csv", error, TarnCsvFileWriter::FILE_CREATE))
//     report(error);                            // e.g. "No such file or directory"
//   csv.AppendInt(3);
//   csv.AppendReal(0.5);
//   csv.FlushCsvLine();                         // writes "3, 0.5\n"
//   csv.CloseFile();
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNCSVFILEWRITER_H
#define TARNUTILITIES_TEXT_TARNCSVFILEWRITER_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/text/CsvLineWriter.h"

#include <cstddef>
#include <cstdio>
#include <string>

class TARN_API TarnCsvFileWriter {
public:
  /// How OpenFile treats an existing file.
  enum FileOpenMode {
    FILE_CREATE = 0, ///< create the file, or empty an existing one
    FILE_APPEND = 1  ///< add to the end of the file, creating it if needed
  };
  /// Line capacity of the default constructor, in characters.
  static constexpr std::size_t DEFAULT_CAPACITY = 16384;

  /// No file open; a line writer of `capacity` characters with separator ", ".
  explicit TarnCsvFileWriter(std::size_t capacity = DEFAULT_CAPACITY);
  /// Closes the file, if one is open.
  ~TarnCsvFileWriter();
  TarnCsvFileWriter(const TarnCsvFileWriter&) = delete;
  TarnCsvFileWriter& operator=(const TarnCsvFileWriter&) = delete;

  /// Opens `name` (UTF-16) and clears the line. Returns false with
  /// "A file is already open" while a file is open, and false with the
  /// system's text for the error (strerror) when the file cannot be opened,
  /// e.g. "No such file or directory". On success `error` is cleared.
  bool OpenFile(const char16_t* name, std::string& error, FileOpenMode mode);
  /// OpenFile without the error text.
  bool OpenFile(const char16_t* name, FileOpenMode mode);
  bool IsOpen() const { return file_ != nullptr; }

  /// @name Appending to the current line
  /// Forward to CsvLineWriter::AppendValue(int), AppendValue(double),
  /// AppendRoundedValue(double, int) and AppendValue(const char*).
  /// @{
  void AppendInt(int value) { line_.AppendValue(value); }
  void AppendReal(double value) { line_.AppendValue(value); }
  void AppendRealPrec(double value, int precision) { line_.AppendRoundedValue(value, precision); }
  void AppendStr(const char* text) { line_.AppendValue(text); }
  /// @}

  /// Empties the current line.
  void ResetCsvLine() { line_.Clear(); }
  /// Writes the line and "\n", then clears the line even if writing failed.
  /// True only if both writes succeeded. With no file open: false, and the
  /// line is kept.
  bool FlushCsvLine();
  /// Writes `text` and "\n" as a line of its own, bypassing the composed
  /// line. False if no file is open or a write failed; a null text writes
  /// an empty line.
  bool WriteLine(const char* text);
  /// Closes the file (if open) and clears the line. A failure of the final
  /// write-out is logged as a warning.
  void CloseFile();

  /// The line writer, e.g. to change its switches or to read the line.
  CsvLineWriter& GetLineWriter() { return line_; }
  const CsvLineWriter& GetLineWriter() const { return line_; }

private:
  std::FILE* file_ = nullptr;
  CsvLineWriter line_;
};

#endif // TARNUTILITIES_TEXT_TARNCSVFILEWRITER_H
