//===- TarnBinFileWriter_F.cpp - Fortran entry points of TarnBinFileWriter --===//
//
// Binary files written from Fortran, read back with an unformatted stream
// read (see TarnBinFileWriter.h for the layout). Like the CSV file writer,
// BinFileWriter_Init_F creates the writer even when the file cannot be
// created (status ERR_FILE_IO), and the caller still releases it. A write
// that fails or finds no open file gives ERR_FILE_IO; a negative count
// ERR_INVALID_ARGUMENT. Release closes the file; a failure to write out
// what was buffered gives ERR_FILE_IO (the writer is destroyed all the same).
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/system/TarnBinFileWriter.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "container/FortranArgs.h"

#include <memory>

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("TarnBinFileWriter_F");

namespace {

ZelStatusCode Written(bool ok) { return ok ? STATUS_OK : ERR_FILE_IO; }

// The common body of the array writes: `count` checked, `values` may be
// null only for a count of 0.
template <typename T>
ZelStatusCode WriteArray(const FortranSite& site, void* handle, const T* values,
                         std::int32_t count,
                         bool (TarnBinFileWriter::*write)(const T*, std::size_t)) {
  TarnBinFileWriter& writer = HandleObject<TarnBinFileWriter>(site, handle);
  const std::size_t n = CheckedCount(site, count, "count");
  if (n > 0 && !values)
    FailArgument(site, "No values were given (null pointer).");
  return Written((writer.*write)(values, n));
}

} // namespace

void BinFileWriter_Init_F(void** handle, const char* name, std::int32_t nameLength,
                          std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    void** out = HandleOutput(site, handle);
    const std::string fileName = NameArgument(site, name, nameLength);
    auto* writer = new TarnBinFileWriter();
    *out = writer;
    std::string error;
    return Written(writer->OpenFile(TarnStringUtil::utf8_to_wide(fileName), error));
  });
}

void BinFileWriter_Release_F(void* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    std::unique_ptr<TarnBinFileWriter> writer(static_cast<TarnBinFileWriter*>(handle));
    return Written(!writer || !writer->IsOpen() || writer->CloseFile());
  });
}

void BinFileWriter_WriteInt_F(void* handle, std::int32_t value, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status,
                  [&] { return Written(HandleObject<TarnBinFileWriter>(site, handle).WriteInt(value)); });
}

void BinFileWriter_WriteIntArray_F(void* handle, const std::int32_t* values, std::int32_t count,
                                   std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    return WriteArray(site, handle, values, count, &TarnBinFileWriter::WriteIntArray);
  });
}

void BinFileWriter_WriteReal4Array_F(void* handle, const float* values, std::int32_t count,
                                     std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    return WriteArray(site, handle, values, count, &TarnBinFileWriter::WriteReal4Array);
  });
}

void BinFileWriter_WriteReal8Array_F(void* handle, const double* values, std::int32_t count,
                                     std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    return WriteArray(site, handle, values, count, &TarnBinFileWriter::WriteReal8Array);
  });
}
