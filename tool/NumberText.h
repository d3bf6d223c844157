//===- tool/NumberText.h - Numbers in tarnutil's output ---------*- C++ -*-===//
//
// Every double tarnutil prints is its shortest round-trip text, so that the
// printed value reads back as exactly the value computed.
//   0.1 => "0.1";  1.0e5 => "1.0e+5";  2.0 => "2.0"
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTIL_NUMBERTEXT_H
#define TARNUTIL_NUMBERTEXT_H

#include <TarnUtilities/text/FloatingPointFormatter.h>

#include <string>

namespace tarnutil {

inline std::string NumberText(double value) {
  char buffer[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
  FloatingPointFormatter().WriteFreeFormat(buffer, value);
  return buffer;
}

} // namespace tarnutil

#endif // TARNUTIL_NUMBERTEXT_H
