//===- ZEL_Message.cpp - Bounded printf-style formatting --------------------===//
#include "TarnUtilities/logging/ZEL_Message.h"

#include <cstdio>
#include <vector>

namespace ZEL_detail {
std::string BoundedFormat(std::size_t size, const char* format, va_list args) {
  if (format == nullptr || size == 0)
    return std::string();
  // vsnprintf truncates silently and always terminates.
  std::vector<char> buffer(size, '\0');
  std::vsnprintf(buffer.data(), size, format, args);
  return std::string(buffer.data());
}
} // namespace ZEL_detail

std::string ZEL_MESSAGE(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = ZEL_detail::BoundedFormat(1024, format, args);
  va_end(args);
  return text;
}
