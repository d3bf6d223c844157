//===- TarnUtilities/logging/ZEL_Failure.h - The failure -------*- C++ -*-===//
//
// ZEL_Failure is the only concrete exception of the library. Its status is
// decided by its code alone: with a code it is an internal error
// (ERR_INTERNAL, -1), without one a user error (ERR_USER, -14).
//
// Example:
//   throw ZEL_Failure(ZEL_Code(), ZEL_MESSAGE("Cannot open file %s", name), kHeader);
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_FAILURE_H
#define TARNUTILITIES_LOGGING_ZEL_FAILURE_H

#include "TarnUtilities/logging/ZEL_Exception.h"

class TARN_API ZEL_Failure : public ZEL_Exception {
public:
  using ZEL_Exception::ZEL_Exception;

  ZEL_Exception* Clone() const override;
  std::string GetName() const override;
  ZelStatusCode GetStatusCode() const override;
};

#endif // TARNUTILITIES_LOGGING_ZEL_FAILURE_H
