//===- FortranHandle_F.cpp - Resetting a handle from Fortran ----------------===//
//
// ZEL_NULLIFY_C_PTR lets Fortran code reset a handle variable without
// knowing how a handle is represented: Release entry points take the handle
// by value and cannot reset the caller's variable themselves.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"

void ZEL_NULLIFY_C_PTR(void** handle) {
  if (handle)
    *handle = nullptr;
}
