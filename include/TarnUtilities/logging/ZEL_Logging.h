//===- TarnUtilities/logging/ZEL_Logging.h - The logger --------*- C++ -*-===//
//
// The process-wide logger over ACE. The calling program configures it once:
//
//   ZEL_LogConfig config;
//   config.level = ZEL_Loglevels::INFO;
//   config.logFile = u"run.log";
//   ZEL_Logging::Init("optimiser", config, u"/work/job42");
//   ...
//   try { ... } catch (const ZEL_Exception& e) { ZEL_Logging::Failure(e); }
//   ZEL_Logging::Release();
//
// Lines logged from any thread, also threads ACE did not create, reach
// standard output or the log file and the listener. Failures are reported as
// a framed text (critical for internal errors, error for user errors) and,
// when configured, as an XML file holding one EXCEPTION element.
//
// SetConfig, SetListener, RemoveListener and Failure need an instance: called
// before Init (or after Release) they create a default one first.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_LOGGING_H
#define TARNUTILITIES_LOGGING_ZEL_LOGGING_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/logging/ZEL_LogConfig.h"
#include "TarnUtilities/logging/ZEL_LogListener.h"

#include <cstddef>
#include <exception>
#include <fstream>
#include <memory>
#include <string>

class ZEL_Exception;

class TARN_API ZEL_Logging {
public:
  virtual ~ZEL_Logging();

  /// Creates the logger and applies the configuration; ignored (the new
  /// configuration too) when a logger exists.
  static void Init(const std::string& programName, const ZEL_LogConfig& config,
                   const std::u16string& workingDirectory);
  /// Applies a configuration: program name, destinations, level.
  static void SetConfig(const ZEL_LogConfig& config, const std::u16string& workingDirectory);
  /// Sends every line also to function (as UTF-16). A listener that is set
  /// already is replaced.
  static void SetListener(ZEL_LogListener::Function function);
  static void RemoveListener();
  /// Destroys the logger; later lines go to standard output again.
  static void Release();

  /// Reports a caught failure as text and/or XML as configured.
  static void Failure(const ZEL_Exception& e);
  /// Reports a caught standard exception; it always counts as internal.
  static void Failure(const std::exception& e);
  /// Reports a caught exception of unknown type as an internal error.
  static void Failure();

  /// The configuration in force (a default one when there is no logger).
  static ZEL_LogConfig GetConfig();

private:
  explicit ZEL_Logging(const std::string& programName);
  static ZEL_Logging& Instance();
  static void LogException(const ZEL_Exception& e, std::size_t level);
  static void WriteExceptionToString(std::string& out, const ZEL_Exception& e, std::size_t level);
  static void WriteExceptionAsXml(std::ofstream& out, const ZEL_Exception& e, std::size_t level);
  void PublishDestinations();
  std::string SupportSentence() const;

  std::unique_ptr<ZEL_LogListener> listener_;
  ZEL_LogConfig config_;
  std::u16string workingDirectory_ = u".";
  std::u16string programName_;
  std::string programNameUtf8_;
  std::unique_ptr<std::ofstream> logStream_;
};

#endif // TARNUTILITIES_LOGGING_ZEL_LOGGING_H
