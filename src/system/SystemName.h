//===- system/SystemName.h - Names handed to the system ------*- C++ -*-===//
//
// Converts the names that TarnFileUtil receives into the zero-terminated
// UTF-8 bytes that POSIX calls take. A name with a zero character inside
// cannot be given to the system without silently naming a different file
// (its prefix), so such a name is refused: callers treat it as a failure
// with errno EINVAL.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_SYSTEM_SYSTEMNAME_H
#define TARNUTILITIES_SRC_SYSTEM_SYSTEMNAME_H

#include <string>

namespace TarnSystemName {

/// A name ready for a system call; `valid` is false for a refused name.
struct Name {
  std::string bytes;
  bool valid = true;
  const char* c_str() const { return bytes.c_str(); }
};

/// A narrow name, used byte for byte.
Name FromNarrow(const std::string& name);
/// A wide name converted to UTF-8 (a lone surrogate becomes U+FFFD).
Name FromWide(const std::u16string& name);
/// A zero-terminated wide name; null is refused.
Name FromWide(const char16_t* name);

} // namespace TarnSystemName

#endif // TARNUTILITIES_SRC_SYSTEM_SYSTEMNAME_H
