//===- TarnUtilities/system/TarnBinFileWriter.h - Binary files -*- C++ -*-===//
//
// Writes numbers to a binary file as they lie in memory: 32-bit integers,
// 4-byte and 8-byte IEEE reals, in the machine's byte order (little-endian
// on x86-64), one after the other, with no header, record markers or
// padding. A Fortran program reads such a file back with
//
//   open(newunit=u, file=name, access='stream', form='unformatted')
//   read(u) n, values(1:n)
//
// and a C program with fread, value by value as they were written.
//
// Example:
//   TarnBinFileWriter out;
//   if (out.OpenFile(u"mesh.bin", error)) {
//     out.WriteInt(3);                          // 4 bytes
//     out.WriteReal8Array(coords, 3);           // 24 bytes
//     out.CloseFile();                          // 28 bytes in all
//   }
//
// Errors of the file system are reported through return values and an
// error text, never by exceptions.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SYSTEM_TARNBINFILEWRITER_H
#define TARNUTILITIES_SYSTEM_TARNBINFILEWRITER_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

class TARN_API TarnBinFileWriter {
public:
  TarnBinFileWriter() = default;
  /// Closes the file, if one is open.
  ~TarnBinFileWriter();
  TarnBinFileWriter(const TarnBinFileWriter&) = delete;
  TarnBinFileWriter& operator=(const TarnBinFileWriter&) = delete;

  /// Creates the file, or empties an existing one (UTF-16 name). False with
  /// "A file is already open" while a file is open, and false with the
  /// system's text (strerror) when the file cannot be created; on success
  /// `error` is cleared.
  bool OpenFile(const std::u16string& name, std::string& error);
  bool IsOpen() const { return file_ != nullptr; }

  /// @name Writing
  /// Each appends the values' bytes; false if no file is open or the write
  /// failed. A count of 0 writes nothing and succeeds while a file is open;
  /// a null pointer with a positive count writes nothing and fails.
  /// @{
  bool WriteInt(std::int32_t value);
  bool WriteIntArray(const std::int32_t* values, std::size_t count);
  bool WriteReal4Array(const float* values, std::size_t count);
  bool WriteReal8Array(const double* values, std::size_t count);
  /// @}

  /// Writes out what is buffered and closes the file. False if that fails
  /// or no file was open.
  bool CloseFile();

private:
  bool WriteBytes(const void* bytes, std::size_t size, std::size_t count);

  std::FILE* file_ = nullptr;
};

#endif // TARNUTILITIES_SYSTEM_TARNBINFILEWRITER_H
