//===- TarnUtilities/logging/ZEL_Loglevels.h - Log levels ------*- C++ -*-===//
//
// The nine log levels, their one-letter and full names, and the ACE priority
// mask each level lets through.
//
//   ToEnum(DEBUG) => 'D'     ToString(TRACE) => "TRACE"
//   EnumToLogLevel('X') => DEVELOP      EnumToLogLevel('q') => NOTICE
//   StringToLogLevel("DEBUG") => DEBUG  StringToLogLevel("debug") => NOTICE
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_LOGLEVELS_H
#define TARNUTILITIES_LOGGING_ZEL_LOGLEVELS_H

#include "TarnUtilities/Export.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class TARN_API ZEL_Loglevels {
public:
  enum Level : std::int32_t {
    QUIET = 0,
    CRITICAL = 1,
    ERROR = 2,
    WARNING = 3,
    NOTICE = 4,
    INFO = 5,
    DEBUG = 6,
    TRACE = 7,
    DEVELOP = 8
  };

  /// The level's letter, one of "QCEWNIDTX"; '?' for a value outside 0..8.
  static char ToEnum(Level level);
  /// The level's name; "UNKNOWN" for a value outside 0..8.
  static const char* ToString(Level level);
  /// The level whose letter is c (case-sensitive); NOTICE for any other c.
  static Level EnumToLogLevel(char c);
  /// The level whose name is exactly s; NOTICE for any other string.
  static Level StringToLogLevel(const std::string& s);
  /// The nine (letter, name) pairs in level order.
  static std::vector<std::pair<char, std::string>> GetLogLevels();
  /// The sum of the ACE priorities shown at this level; 0 outside 0..8.
  ///   QUIET => 0, CRITICAL => 256, NOTICE => 432, TRACE and DEVELOP => 446
  static unsigned long PriorityMask(Level level);
};

#endif // TARNUTILITIES_LOGGING_ZEL_LOGLEVELS_H
