//===- ZEL_IntArray_F.cpp - Fortran entry points of ZEL_IntArray ------------===//
//
// The integer array for Fortran callers. These entry points have no status
// argument: a failure (a null handle, a negative count, memory exhausted)
// is logged and ends the process through the application terminator with
// exit code 1. Releasing a null handle does nothing.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/container/ZEL_IntArray.h"
#include "container/FortranArgs.h"

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("ZEL_IntArray_F");

void IntArray_Init_F(void** handle) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to create an empty IntArray", [&] {
    void** out = HandleOutput(site, handle);
    *out = new ZEL_IntArray();
  });
}

void IntArray_Release_F(void* handle) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to deallocate an IntArray",
                   [&] { delete static_cast<ZEL_IntArray*>(handle); });
}

void IntArray_Assign_F(void* handle, void* source) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to assign an IntArray", [&] {
    HandleObject<ZEL_IntArray>(site, handle) =
        HandleObject<ZEL_IntArray>(site, source);
  });
}

void IntArray_PushBack_F(void* handle, const std::int32_t* value) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to append a value to an IntArray", [&] {
    HandleObject<ZEL_IntArray>(site, handle)
        .PushBack(ArgumentValue(site, value, "value"));
  });
}

void IntArray_Reserve_F(void* handle, const std::int32_t* count) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to reserve memory for an IntArray", [&] {
    ZEL_IntArray& array = HandleObject<ZEL_IntArray>(site, handle);
    array.Reserve(CheckedCount(site, ArgumentValue(site, count, "count"),
                               "count"));
  });
}

void IntArray_Resize_F(void* handle, const std::int32_t* count) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to resize an IntArray", [&] {
    ZEL_IntArray& array = HandleObject<ZEL_IntArray>(site, handle);
    array.Resize(CheckedCount(site, ArgumentValue(site, count, "count"),
                              "count"));
  });
}

void IntArray_SortAscending_F(void* handle) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to sort an IntArray in an ascending order",
                   [&] { HandleObject<ZEL_IntArray>(site, handle).Sort(); });
}

void IntArray_DeleteDoublets_F(void* handle) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to delete the doublets in an IntArray",
                   [&] { HandleObject<ZEL_IntArray>(site, handle).Unique(); });
}
