//===- ZEL_CsvLineWriter_F.cpp - Fortran entry points of CsvLineWriter ------===//
//
// One CSV line composed from Fortran, for ZEL_CsvTableWriter to write. The
// writer is created with the separator ", ", the one TarnCsvFileWriter uses,
// so that tables written either way read alike. Values that do not fit, or
// a NaN or infinity refused by the line writer, fail with ERR_INTERNAL (a
// standard exception of the line writer) and leave the line as the line
// writer leaves it.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/text/CsvLineWriter.h"
#include "TarnUtilities/text/TarnFormatUtil.h"
#include "container/FortranArgs.h"

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("ZEL_CsvLineWriter_F");

namespace {
// The separator of every line writer created from Fortran.
const char* const kSeparator = ", ";
} // namespace

void CsvLineWriter_Init_F(void** handle, const std::int32_t* capacity, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    void** out = HandleOutput(site, handle);
    const std::size_t room = CheckedCount(
        site, ArgumentValue(site, capacity, "capacity"), "capacity");
    *out = new CsvLineWriter(room, kSeparator);
  });
}

void CsvLineWriter_Release_F(void* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] { delete static_cast<CsvLineWriter*>(handle); });
}

void CsvLineWriter_Clear_F(void* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    if (handle)
      static_cast<CsvLineWriter*>(handle)->Clear();
  });
}

void CsvLineWriter_AppendValueInt_F(void* handle, std::int32_t value, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    HandleObject<CsvLineWriter>(site, handle).AppendValue(static_cast<int>(value));
  });
}

void CsvLineWriter_AppendValueDble_F(void* handle, double value, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status,
                  [&] { HandleObject<CsvLineWriter>(site, handle).AppendValue(value); });
}

void CsvLineWriter_AppendValueDblePrec_F(void* handle, double value, std::int32_t precision,
                                         std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    HandleObject<CsvLineWriter>(site, handle).AppendValueFixedFmt(value, precision);
  });
}

void CsvLineWriter_AppendValueReal_F(void* handle, float value, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    CsvLineWriter& line = HandleObject<CsvLineWriter>(site, handle);
    line.AppendValue(TarnFormatUtil::float_to_str(value));
  });
}

void CsvLineWriter_AppendValueString_F(void* handle, const char* chars, const std::int32_t* length,
                                       std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    CsvLineWriter& line = HandleObject<CsvLineWriter>(site, handle);
    line.AppendValue(TextArgument(site, chars,
                                  ArgumentValue(site, length, "length")));
  });
}
