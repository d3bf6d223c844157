//===- tool/ConfigCommand.cpp - tarnutil config --------------------------===//
//
// Loads a configuration file with the library's reader, which checks its
// syntax, and prints it back in the reader's own syntax: every definition,
// or the value of one key.
//
//===----------------------------------------------------------------------===//
#include "Commands.h"
#include "Progress.h"

#include <TarnUtilities/text/ZEL_ConfigFile.h>

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace tarnutil {
namespace {

const char kHelp[] =
    "usage: tarnutil config FILE [KEY]\n"
    "\n"
    "Reads the configuration file FILE (key = value lines) and prints every\n"
    "definition as \"key = value\", in file order; with KEY, prints that key's\n"
    "value only. A syntax error is reported with the file and line, and an\n"
    "undefined KEY is an error (exit code 1).\n";

std::uintmax_t FileSize(const std::string& fileName) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(fileName, error);
  return error ? 0 : size;
}

int Run(Arguments& args) {
  const std::vector<std::string> operands = args.Rest();
  if (operands.empty() || operands.size() > 2)
    throw UsageError("config needs FILE and at most one KEY");
  const std::string& fileName = operands[0];

  ZEL_ConfigFile config;
  {
    // The reader takes the file in one call: a large file shows only its
    // start and end.
    Progress progress("reading " + fileName, 1, FileSize(fileName));
    progress.Update(0);
    config.LoadFile(fileName);
  }
  if (operands.size() == 2)
    std::cout << config[operands[1]] << "\n";
  else
    config.print(std::cout);
  return kExitOk;
}

} // namespace

const Command kConfigCommand = {"config", "check and print a configuration file", kHelp, Run};

} // namespace tarnutil
