//===- TarnUtilities/text/ZEL_CsvFileFailure.h - CSV file errors -*- C++ -*-===//
//
// The failure the CSV table writer throws when it cannot open one of its
// files. It is a ZEL_Failure in every respect (caught as one, named
// "ZEL_Failure" in logs) except its status code, which is ERR_FILE_IO
// instead of the user or internal error a plain ZEL_Failure reports, so that
// a caller who turns failures into status codes can tell a file problem
// from a program error.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_ZEL_CSVFILEFAILURE_H
#define TARNUTILITIES_TEXT_ZEL_CSVFILEFAILURE_H

#include "TarnUtilities/logging/ZEL_Failure.h"

class TARN_API ZEL_CsvFileFailure : public ZEL_Failure {
public:
  using ZEL_Failure::ZEL_Failure;

  ZEL_Exception* Clone() const override;
  /// Always ERR_FILE_IO.
  ZelStatusCode GetStatusCode() const override;
};

#endif // TARNUTILITIES_TEXT_ZEL_CSVFILEFAILURE_H
