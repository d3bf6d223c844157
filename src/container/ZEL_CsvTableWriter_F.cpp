//===- ZEL_CsvTableWriter_F.cpp - Fortran entry points of ZEL_CsvTableWriter -===//
//
// Wide CSV tables written from Fortran: the table writer takes the line of
// a CsvLineWriter handle (not owned; it must live until the line is
// written) and appends it to its set of files. A maximum of columns per
// file below 1 gives ERR_INVALID_ARGUMENT; a file that cannot be written
// gives ERR_FILE_IO.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/CsvLineWriter.h"
#include "TarnUtilities/text/ZEL_CsvTableWriter.h"
#include "container/FortranArgs.h"

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("ZEL_CsvTableWriter_F");

void ZEL_CsvTableWriter_Init_F(void** handle, const char* name, const std::int32_t* nameLength,
                               const std::int32_t* maxColumns, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    void** out = HandleOutput(site, handle);
    const std::string fileName = NameArgument(
        site, name, ArgumentValue(site, nameLength, "name length"));
    const std::int32_t maximum = ArgumentValue(site, maxColumns, "maximum");
    if (maximum < 1)
      FailArgument(site,
                   ZEL_MESSAGE("The maximum number of columns per file must be at least 1, "
                               "not %d.",
                               maximum));
    *out = new ZEL_CsvTableWriter(fileName, maximum);
  });
}

void ZEL_CsvTableWriter_AppendCsvLine_F(void* handle, void* lineWriter, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    ZEL_CsvTableWriter& table = HandleObject<ZEL_CsvTableWriter>(site, handle);
    table.AppendCsv(HandleObject<CsvLineWriter>(site, lineWriter));
  });
}

void ZEL_CsvTableWriter_WriteToFile_F(void* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    HandleObject<ZEL_CsvTableWriter>(site, handle).WriteToFile();
  });
}

void ZEL_CsvTableWriter_Release_F(void* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status,
                  [&] { delete static_cast<ZEL_CsvTableWriter*>(handle); });
}
