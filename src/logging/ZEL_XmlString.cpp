//===- ZEL_XmlString.cpp - XML escaping -------------------------------------===//
#include "TarnUtilities/logging/ZEL_XmlString.h"

std::string ZEL_XmlString(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
    case '<': out += "&lt;"; break;
    case '>': out += "&gt;"; break;
    case '&': out += "&amp;"; break;
    default: out += c;
    }
  }
  return out;
}
