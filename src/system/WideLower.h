//===- system/WideLower.h - Lower-casing of UTF-16 names -----*- C++ -*-===//
//
// Simple Unicode lower-casing of each UTF-16 code unit, as used by the
// case-insensitive extension test of wide names. Surrogate units are left as
// they are (characters outside the Basic Multilingual Plane keep their case).
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_SYSTEM_WIDELOWER_H
#define TARNUTILITIES_SRC_SYSTEM_WIDELOWER_H

#include <string>

namespace TarnPath {

/// Lower-cases every code unit of s in place.
/// One unit always stays one unit.
///   u"A.TXT" => u"a.txt",  u"\u00C4" => u"\u00E4",  u"\u0130" => u"i"
void LowerCase(std::u16string& s);

} // namespace TarnPath

#endif // TARNUTILITIES_SRC_SYSTEM_WIDELOWER_H
