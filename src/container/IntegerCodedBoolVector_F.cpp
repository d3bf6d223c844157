//===- IntegerCodedBoolVector_F.cpp - Flags and their integer code ----------===//
//
// Conversion between an integer code and an array of 32 flags for Fortran
// callers (see IntegerCodedBoolVector.h). No status argument: a null
// pointer is logged and ends the process through the application
// terminator with exit code 1.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/IntegerCodedBoolVector.h"
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "container/FortranArgs.h"

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("IntegerCodedBoolVector_F");

void IntegerCodedBoolVector_ToArray_F(const std::int32_t* code, std::int32_t* flags) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to convert an integer code to flags", [&] {
    const std::int32_t value = ArgumentValue(site, code, "integer code");
    if (!flags)
      FailArgument(site, "No flag array was given (null pointer).");
    IntegerCodedBoolVector(value).ToArray(flags);
  });
}

void IntegerCodedBoolVector_ToInt_F(std::int32_t* code, const std::int32_t* flags) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to convert flags to an integer code", [&] {
    if (!code)
      FailArgument(site, "No integer code variable was given (null pointer).");
    *code = IntegerCodedBoolVector::FromArray(&ArgumentValue(site, flags, "flag array")).ToInt();
  });
}
