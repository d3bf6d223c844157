//===- Pow5Table128.cpp - 128-bit significands of powers of five ----------===//
//
// The table declared in Pow5Table128.h, from the generated entries.
//
//===----------------------------------------------------------------------===//
#include "text/strings/Pow5Table128.h"

namespace TarnFormatDetail {

const Pow5Significand kPow5Table[kPow5TableMax - kPow5TableMin + 1] = {
#include "text/strings/Pow5Table128.inc"
};

} // namespace TarnFormatDetail
