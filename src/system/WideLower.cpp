//===- WideLower.cpp - Lower-casing of UTF-16 names -------------------------===//
//
// Uses the C library's case tables of the "C.UTF-8" locale, whatever locale
// the program has set, so that the result does not depend on the caller's
// environment. Without that locale only ASCII letters are lowered.
//
//===----------------------------------------------------------------------===//
#include "system/WideLower.h"

#include <locale.h>
#include <wctype.h>

namespace {

// The locale is created once and kept for the life of the process.
locale_t Utf8Locale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t(0));
  return locale;
}

bool IsSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDFFF; }

} // namespace

namespace TarnPath {

void LowerCase(std::u16string& s) {
  const locale_t locale = Utf8Locale();
  for (char16_t& c : s) {
    if (c < 0x80) {
      if (c >= u'A' && c <= u'Z')
        c = static_cast<char16_t>(c - u'A' + u'a');
    } else if (locale != locale_t(0) && !IsSurrogate(c)) {
      const wint_t lower = towlower_l(static_cast<wint_t>(c), locale);
      // A lower case outside the 16-bit range cannot replace one unit.
      if (lower <= 0xFFFF && !IsSurrogate(static_cast<char16_t>(lower)))
        c = static_cast<char16_t>(lower);
    }
  }
}

} // namespace TarnPath
