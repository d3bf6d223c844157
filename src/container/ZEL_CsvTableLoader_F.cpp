//===- ZEL_CsvTableLoader_F.cpp - Fortran entry points of ZEL_CsvTableLoader -===//
//
// CSV tables read from Fortran. Columns are numbered from 1, as Fortran
// counts; a column number outside 1..NumColumns gives ERR_OUT_OF_RANGE. A
// file that cannot be read gives ERR_FILE_IO and a malformed one ERR_USER;
// then no loader is created and the handle is null. Column data come as a
// new array handle that the caller releases with IntArray_Release_F or
// DoubleArray_Release_F.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/container/ZEL_IntArray.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/ZEL_CsvTableLoader.h"
#include "container/FortranArgs.h"

#include <limits>
#include <memory>

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("ZEL_CsvTableLoader_F");

namespace {

// The index (from 0) of the column the caller numbers from 1.
std::size_t ColumnIndex(const FortranSite& site, const ZEL_CsvTableLoader& table,
                        const std::int32_t* column) {
  const std::int32_t number = ArgumentValue(site, column, "column");
  if (number < 1 || static_cast<std::size_t>(number) > table.GetNumColumns())
    throw StatusFailure(ERR_OUT_OF_RANGE,
                        ZEL_MESSAGE("There is no column %d: the table has %zu columns.", number,
                                    table.GetNumColumns()),
                        site.binding.header);
  return static_cast<std::size_t>(number) - 1;
}

// A count as a 32-bit result; counts beyond its range give its maximum.
std::int32_t Saturated(std::size_t count) {
  constexpr auto kMax = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  return static_cast<std::int32_t>(count < kMax ? count : kMax);
}

} // namespace

void ZEL_CsvTableLoader_Init_F(void** handle, const char* name, const std::int32_t* nameLength,
                               std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    void** out = HandleOutput(site, handle);
    const std::string fileName =
        NameArgument(site, name, ArgumentValue(site, nameLength, "name length"));
    *out = new ZEL_CsvTableLoader(TarnStringUtil::utf8_to_wide(fileName));
  });
}

void ZEL_CsvTableLoader_Release_F(void* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] { delete static_cast<ZEL_CsvTableLoader*>(handle); });
}

std::int32_t ZEL_CsvTableLoader_NumRows_F(void* handle) {
  const FortranSite site = TARN_FORTRAN_SITE;
  return GuardOrTerminate(site, "Failed to count the rows of a csv-table", [&] {
    return handle ? Saturated(static_cast<ZEL_CsvTableLoader*>(handle)->GetNumRows()) : 0;
  });
}

std::int32_t ZEL_CsvTableLoader_NumColumns_F(void* handle) {
  const FortranSite site = TARN_FORTRAN_SITE;
  return GuardOrTerminate(site, "Failed to count the columns of a csv-table", [&] {
    return handle ? Saturated(static_cast<ZEL_CsvTableLoader*>(handle)->GetNumColumns()) : 0;
  });
}

void ZEL_CsvTableLoader_GetColTitle_F(void* handle, const std::int32_t* column, char* title,
                                      const std::int32_t* length, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    const ZEL_CsvTableLoader& table = HandleObject<ZEL_CsvTableLoader>(site, handle);
    const std::int32_t capacity = ArgumentValue(site, length, "length");
    return CopyToFortran(site, table.GetColTitle(ColumnIndex(site, table, column)), title,
                         capacity);
  });
}

void ZEL_CsvTableLoader_GetIntColData_F(void* handle, const std::int32_t* column,
                                        void** intArray, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    void** out = HandleOutput(site, intArray);
    const ZEL_CsvTableLoader& table = HandleObject<ZEL_CsvTableLoader>(site, handle);
    auto values = std::make_unique<ZEL_IntArray>();
    table.GetIntColData(ColumnIndex(site, table, column), *values);
    *out = values.release();
  });
}

void ZEL_CsvTableLoader_GetRealColData_F(void* handle, const std::int32_t* column,
                                         void** doubleArray, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    void** out = HandleOutput(site, doubleArray);
    const ZEL_CsvTableLoader& table = HandleObject<ZEL_CsvTableLoader>(site, handle);
    auto values = std::make_unique<ZEL_DoubleArray>();
    table.GetRealColData(ColumnIndex(site, table, column), *values);
    *out = values.release();
  });
}
