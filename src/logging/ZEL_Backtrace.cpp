//===- ZEL_Backtrace.cpp - Stack frames (not captured) ----------------------===//
#include "TarnUtilities/logging/ZEL_Backtrace.h"

#include <cstdio>

namespace ZEL_Backtrace {

std::vector<std::string> GetBacktrace() { return {}; }

void PrintBacktrace() {
  const std::vector<std::string> frames = GetBacktrace();
  if (frames.empty())
    return;
  std::printf("BACKTRACE:\n");
  for (const std::string& frame : frames)
    std::printf("%s\n", frame.c_str());
}

} // namespace ZEL_Backtrace
