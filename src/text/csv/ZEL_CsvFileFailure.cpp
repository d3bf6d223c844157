//===- ZEL_CsvFileFailure.cpp - CSV file errors -----------------------------===//
#include "TarnUtilities/text/ZEL_CsvFileFailure.h"

ZEL_Exception* ZEL_CsvFileFailure::Clone() const {
  return new ZEL_CsvFileFailure(*this);
}

ZelStatusCode ZEL_CsvFileFailure::GetStatusCode() const {
  return ERR_FILE_IO;
}
