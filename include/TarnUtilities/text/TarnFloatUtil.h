//===- TarnUtilities/text/TarnFloatUtil.h - Floats in decimal ------*- C++ -*-===//
//
// Small exact conversions of single-precision values through their shortest
// decimal form: a float's own digits as mantissa and power of ten, and the
// double that those digits denote (0.1f becomes 0.1, not 0.100000001490116).
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNFLOATUTIL_H
#define TARNUTILITIES_TEXT_TARNFLOATUTIL_H

#include "TarnUtilities/Export.h"

#include <cstdint>

class TARN_API TarnFloatUtil {
public:
  /// A decimal number: (-1)^negative * mantissa * 10^exponent.
  struct FloatNumber {
    bool negative;
    uint32_t mantissa;
    int32_t exponent;
  };

  /// The double nearest to the float's shortest decimal form:
  ///   0.1f => 0.1    3.4028235e38f => 3.4028235e38    1e-45f => 1e-45
  /// Zeros keep their sign; NaN stays NaN and infinities stay infinite.
  static double float_to_double(float value);

  /// The float's shortest round-trip digits as mantissa and power of ten,
  /// with no trailing zeros in the mantissa; true for finite values.
  ///   0.1f => {false, 1, -1}    -1250.0f => {true, 125, 1}    0.0f => {false, 0, 0}
  /// NaN and infinities give mantissa 0, exponent 0 and false.
  static bool float_to_pow10(float value, FloatNumber& out);
};

#endif // TARNUTILITIES_TEXT_TARNFLOATUTIL_H
