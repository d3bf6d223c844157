//===- tool/Commands.h - The subcommands of tarnutil ------------*- C++ -*-===//
//
// One entry per subcommand: its name, its one-line summary, its help text and
// the function that runs it on the words after its name. Each runner prints
// its result on standard output and returns kExitOk; a bad command line is a
// UsageError, bad input an InputError or the library's ZEL_Failure, which
// main() turns into a message and an exit code.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTIL_COMMANDS_H
#define TARNUTIL_COMMANDS_H

#include "Arguments.h"

namespace tarnutil {

struct Command {
  const char* name;
  const char* summary;
  const char* help;
  int (*run)(Arguments& args);
};

extern const Command kParfileCommand;
extern const Command kConfigCommand;
extern const Command kFmtCommand;
extern const Command kKMeansCommand;
extern const Command kNearestCommand;

} // namespace tarnutil

#endif // TARNUTIL_COMMANDS_H
