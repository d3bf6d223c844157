//===- ZEL_Loglevels.cpp - Log levels ---------------------------------------===//
#include "TarnUtilities/logging/ZEL_Loglevels.h"

#include <ace/Log_Priority.h>

namespace {
constexpr int kLevelCount = 9;
constexpr char kLetters[] = "QCEWNIDTX";
constexpr const char* kNames[kLevelCount] = {"QUIET", "CRITICAL", "ERROR",  "WARNING", "NOTICE",
                                             "INFO",  "DEBUG",    "TRACE",  "DEVELOP"};
bool InRange(int level) { return level >= 0 && level < kLevelCount; }
} // namespace

char ZEL_Loglevels::ToEnum(Level level) { return InRange(level) ? kLetters[level] : '?'; }

const char* ZEL_Loglevels::ToString(Level level) {
  return InRange(level) ? kNames[level] : "UNKNOWN";
}

ZEL_Loglevels::Level ZEL_Loglevels::EnumToLogLevel(char c) {
  for (int i = 0; i < kLevelCount; ++i)
    if (kLetters[i] == c)
      return static_cast<Level>(i);
  return NOTICE;
}

ZEL_Loglevels::Level ZEL_Loglevels::StringToLogLevel(const std::string& s) {
  for (int i = 0; i < kLevelCount; ++i)
    if (s == kNames[i])
      return static_cast<Level>(i);
  return NOTICE;
}

std::vector<std::pair<char, std::string>> ZEL_Loglevels::GetLogLevels() {
  std::vector<std::pair<char, std::string>> levels;
  levels.reserve(kLevelCount);
  for (int i = 0; i < kLevelCount; ++i)
    levels.emplace_back(kLetters[i], kNames[i]);
  return levels;
}

unsigned long ZEL_Loglevels::PriorityMask(Level level) {
  // Each level adds one ACE priority to the one before; DEVELOP shows what
  // TRACE shows, because developer lines are written at NOTICE priority.
  switch (level) {
  case CRITICAL: return LM_CRITICAL;
  case ERROR: return PriorityMask(CRITICAL) | LM_ERROR;
  case WARNING: return PriorityMask(ERROR) | LM_WARNING;
  case NOTICE: return PriorityMask(WARNING) | LM_NOTICE;
  case INFO: return PriorityMask(NOTICE) | LM_INFO;
  case DEBUG: return PriorityMask(INFO) | LM_DEBUG;
  case TRACE:
  case DEVELOP: return PriorityMask(DEBUG) | LM_TRACE;
  default: return 0;
  }
}
