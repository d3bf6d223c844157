//===- TarnUtilities/logging/ZEL_LogConfig.h - Logger settings -*- C++ -*-===//
//
// What the logger is to do: the level, where lines go and where failures are
// written. A default configuration logs at NOTICE to standard output and
// writes no failure XML file.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_LOGCONFIG_H
#define TARNUTILITIES_LOGGING_ZEL_LOGCONFIG_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/logging/ZEL_Loglevels.h"

#include <string>

class TARN_API ZEL_LogConfig {
public:
  ZEL_LogConfig() = default;
  ZEL_LogConfig(const ZEL_LogConfig&) = default;
  ZEL_LogConfig& operator=(const ZEL_LogConfig&) = default;
  virtual ~ZEL_LogConfig() = default;

  /// The most detailed level written.
  ZEL_Loglevels::Level level = ZEL_Loglevels::NOTICE;
  /// Name or path of the log file; empty logs to standard output. A name
  /// without a directory is placed in the logger's working directory.
  std::u16string logFile;
  /// Delete an existing log file before logging starts (else append to it).
  bool removeExistingLogFile = false;
  /// With a log file, keep logging to standard error as well.
  bool echoToStderr = false;
  /// File (in the working directory) into which each failure is written as
  /// XML; empty writes none.
  std::u16string exceptionXmlFile;
  /// With an XML file, also write the failure text to the log.
  bool logXmlExceptionsAsText = false;
};

#endif // TARNUTILITIES_LOGGING_ZEL_LOGCONFIG_H
