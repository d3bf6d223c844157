//===- TarnUtilities/logging/ZEL_XmlString.h - XML escaping ----*- C++ -*-===//
//
// Escapes text for XML element content, as used in the failure XML file.
//
//   ZEL_XmlString("a < b && c > d") => "a &lt; b &amp;&amp; c &gt; d"
//
// Only "<", ">" and "&" are replaced; quotes are left as they are.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_XMLSTRING_H
#define TARNUTILITIES_LOGGING_ZEL_XMLSTRING_H

#include "TarnUtilities/Export.h"

#include <string>

TARN_API std::string ZEL_XmlString(const std::string& text);

#endif // TARNUTILITIES_LOGGING_ZEL_XMLSTRING_H
