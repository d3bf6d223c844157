//===- ZEL_DoubleArray_F.cpp - Fortran entry points of ZEL_DoubleArray ------===//
//
// The double array for Fortran callers. Like the integer array's entry
// points these have no status argument: a failure is logged and ends the
// process through the application terminator with exit code 1. Releasing a
// null handle does nothing.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "container/FortranArgs.h"

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("ZEL_DoubleArray_F");

void DoubleArray_Init_F(void** handle) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to create an empty DoubleArray", [&] {
    void** out = HandleOutput(site, handle);
    *out = new ZEL_DoubleArray();
  });
}

void DoubleArray_Release_F(void* handle) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to deallocate a DoubleArray",
                   [&] { delete static_cast<ZEL_DoubleArray*>(handle); });
}

void DoubleArray_Assign_F(void* handle, void* source) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to assign a DoubleArray", [&] {
    HandleObject<ZEL_DoubleArray>(site, handle) =
        HandleObject<ZEL_DoubleArray>(site, source);
  });
}

void DoubleArray_Reserve_F(void* handle, const std::int32_t* count) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to reserve memory for a DoubleArray", [&] {
    ZEL_DoubleArray& array = HandleObject<ZEL_DoubleArray>(site, handle);
    array.Reserve(CheckedCount(site, ArgumentValue(site, count, "count"),
                               "count"));
  });
}

void DoubleArray_Resize_F(void* handle, const std::int32_t* count) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to resize a DoubleArray", [&] {
    ZEL_DoubleArray& array = HandleObject<ZEL_DoubleArray>(site, handle);
    array.Resize(CheckedCount(site, ArgumentValue(site, count, "count"),
                              "count"));
  });
}
