//===- TarnCsvFileWriter_F.cpp - Fortran entry points of TarnCsvFileWriter --===//
//
// CSV files written line by line from Fortran. CsvFileWriter_Init_F creates
// the writer with the default line capacity (16384 characters) and opens
// the file; a file that cannot be opened gives ERR_FILE_IO but the writer
// stays created and the caller still releases it. A flush or line write
// that fails (or finds no open file) gives ERR_FILE_IO as well.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnCsvFileWriter.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "container/FortranArgs.h"

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("TarnCsvFileWriter_F");

void CsvFileWriter_Init_F(void** handle, const char* name, std::int32_t nameLength,
                          std::int32_t mode, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    void** out = HandleOutput(site, handle);
    const std::string fileName = NameArgument(site, name, nameLength);
    if (mode != TarnCsvFileWriter::FILE_CREATE && mode != TarnCsvFileWriter::FILE_APPEND)
      FailArgument(site,
                   ZEL_MESSAGE("The open mode must be 0 (create) or 1 (append), not %d.", mode));
    auto* writer = new TarnCsvFileWriter(TarnCsvFileWriter::DEFAULT_CAPACITY);
    *out = writer;
    const bool opened = writer->OpenFile(TarnStringUtil::utf8_to_wide(fileName).c_str(),
                                         static_cast<TarnCsvFileWriter::FileOpenMode>(mode));
    return opened ? STATUS_OK : ERR_FILE_IO;
  });
}

void CsvFileWriter_Release_F(void* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status,
                  [&] { delete static_cast<TarnCsvFileWriter*>(handle); });
}

void CsvFileWriter_AppendInt_F(void* handle, std::int32_t value, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    HandleObject<TarnCsvFileWriter>(site, handle).AppendInt(static_cast<int>(value));
  });
}

void CsvFileWriter_AppendReal_F(void* handle, double value, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    HandleObject<TarnCsvFileWriter>(site, handle).AppendReal(value);
  });
}

void CsvFileWriter_AppendRealPrec_F(void* handle, double value, std::int32_t precision,
                                    std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    HandleObject<TarnCsvFileWriter>(site, handle).AppendRealPrec(value, precision);
  });
}

void CsvFileWriter_FlushCsvLine_F(void* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    const bool written = HandleObject<TarnCsvFileWriter>(site, handle).FlushCsvLine();
    return written ? STATUS_OK : ERR_FILE_IO;
  });
}

void CsvFileWriter_WriteLine_F(void* handle, const char* chars, std::int32_t length,
                               std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    TarnCsvFileWriter& writer = HandleObject<TarnCsvFileWriter>(site, handle);
    const bool written = writer.WriteLine(TextArgument(site, chars, length).c_str());
    return written ? STATUS_OK : ERR_FILE_IO;
  });
}
