//===- tool/main.cpp - tarnutil: the library's command-line tool ---------===//
//
// Lets an engineer check the suite's files without writing code:
//   tarnutil [--log LEVEL] SUBCOMMAND [ARGS]...
// Reads the global options, sets up the logger (lines on standard error at
// the chosen level), runs the subcommand and turns its failures into a
// message on standard error and an exit code: 0 ok, 1 bad input, 2 usage.
//
//===----------------------------------------------------------------------===//
#include "Arguments.h"
#include "Commands.h"

#include <TarnUtilities/logging/ZEL_Exception.h>
#include <TarnUtilities/logging/ZEL_Logging.h>
#include <TarnUtilities/text/TarnStringUtil.h>

#include <cctype>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

#ifndef TARNUTIL_VERSION
#error "TARNUTIL_VERSION is set by the build"
#endif

namespace {

using namespace tarnutil;

const Command* const kCommands[] = {&kParfileCommand, &kConfigCommand, &kFmtCommand, &kKMeansCommand,
                                    &kNearestCommand};

void PrintUsage(std::FILE* out) {
  std::fprintf(out,
               "usage: tarnutil [--log LEVEL] SUBCOMMAND [ARGS]...\n"
               "       tarnutil SUBCOMMAND --help\n"
               "       tarnutil --version\n"
               "\n"
               "Subcommands:\n");
  for (const Command* command : kCommands)
    std::fprintf(out, "  %-9s %s\n", command->name, command->summary);
  std::fprintf(out,
               "\n"
               "  --log LEVEL  log lines on standard error up to LEVEL: QUIET, CRITICAL,\n"
               "               ERROR, WARNING (default), NOTICE, INFO, DEBUG, TRACE, DEVELOP\n"
               "               or its letter Q C E W N I D T X\n"
               "\n"
               "Exit codes: 0 done, 1 bad input (a file that cannot be read or is\n"
               "wrong), 2 bad command line.\n");
}

/// The level named by text: a level name in any case or its letter.
///   "debug" => DEBUG;  "D" => DEBUG;  "loud" => throws UsageError
ZEL_Loglevels::Level ParseLevel(const std::string& text) {
  std::string upper = text;
  for (char& c : upper)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  for (const auto& [letter, name] : ZEL_Loglevels::GetLogLevels())
    if (upper == name || (upper.size() == 1 && upper[0] == letter))
      return ZEL_Loglevels::StringToLogLevel(name);
  throw UsageError("unknown log level '" + text + "'");
}

/// The library's logger writes to standard error, so that standard output
/// holds only the results.
void SetUpLogging(ZEL_Loglevels::Level level) {
  ZEL_LogConfig config;
  config.level = level;
  config.logFile = u"/dev/null"; // with echoToStderr: standard error only
  config.echoToStderr = true;
  std::error_code error;
  const std::string cwd = std::filesystem::current_path(error).string();
  ZEL_Logging::Init("tarnutil", config, TarnStringUtil::utf8_to_wide(error ? "." : cwd));
}

/// A failure's message and the messages of its causes, one per line.
std::string FailureText(const ZEL_Exception& e) {
  std::string text = e.GetMessage();
  for (const ZEL_Exception* reason = e.GetReason(); reason != nullptr; reason = reason->GetReason())
    text += "\n  because: " + reason->GetMessage();
  return text;
}

/// Runs the command line; a usage error names the subcommand it is about
/// in `command` so the hint can point at that subcommand's help.
int Dispatch(const std::vector<std::string>& words, const Command*& command) {
  Arguments global(words);
  std::string levelText;
  const bool hasLevel = global.TakeOption("--log", levelText);
  const ZEL_Loglevels::Level level = hasLevel ? ParseLevel(levelText) : ZEL_Loglevels::WARNING;
  const std::vector<std::string>& rest = global.Words();
  if (rest.empty()) {
    PrintUsage(stderr);
    return kExitUsage;
  }
  const std::string& first = rest.front();
  if (first == "--version") {
    std::printf("tarnutil %s\n", TARNUTIL_VERSION); // the library version it is built with
    return kExitOk;
  }
  if (first == "--help" || first == "-h") {
    PrintUsage(stdout);
    return kExitOk;
  }
  for (const Command* candidate : kCommands)
    if (first == candidate->name)
      command = candidate;
  if (command == nullptr)
    throw UsageError((first[0] == '-' ? "unknown option " : "unknown subcommand ") + first);
  Arguments args(std::vector<std::string>(rest.begin() + 1, rest.end()));
  if (args.WantsHelp()) {
    std::fputs(command->help, stdout);
    return kExitOk;
  }
  SetUpLogging(level);
  return command->run(args);
}

int Main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  const Command* command = nullptr;
  int exitCode = kExitOk;
  try {
    exitCode = Dispatch(words, command);
  } catch (const UsageError& e) {
    std::fprintf(stderr, "tarnutil: %s\nTry 'tarnutil %s--help'.\n", e.what(),
                 command != nullptr ? (std::string(command->name) + " ").c_str() : "");
    exitCode = kExitUsage;
  } catch (const InputError& e) {
    std::fprintf(stderr, "tarnutil: %s\n", e.what());
    exitCode = kExitBadInput;
  } catch (const ZEL_Exception& e) {
    std::fprintf(stderr, "tarnutil: %s\n", FailureText(e).c_str());
    exitCode = kExitBadInput;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "tarnutil: out of memory\n");
    exitCode = kExitBadInput;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "tarnutil: %s\n", e.what());
    exitCode = kExitBadInput;
  }
  std::fflush(stdout);
  ZEL_Logging::Release();
  return exitCode;
}

} // namespace

int main(int argc, char** argv) { return Main(argc, argv); }
