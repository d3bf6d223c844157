//===- TarnStringUtilToDouble.cpp - Decimal text to double ------------------===//
//
// TarnStringUtil's reader of doubles: blanks first, then the library's exact
// decimal reader.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringUtil.h"

#include "TarnUtilities/text/TarnFormatUtil.h"
#include "text/strings/TextCharClass.h"

ZelStatusCode TarnStringUtil::ToDouble(const char* s, double& out) {
  out = 0.0;
  if (s == nullptr)
    return ERR_NOT_FOUND;
  while (tarn_detail::IsBlank(*s))
    ++s;
  const char* end = s;
  const double value = TarnFormatUtil::str_to_double(s, &end);
  if (end == s)
    return ERR_NOT_FOUND;
  out = value;
  return STATUS_OK;
}

ZelStatusCode TarnStringUtil::ToDouble(const std::string& s, double& out) {
  return ToDouble(s.c_str(), out);
}
