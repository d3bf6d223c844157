//===- TarnUtilities/system/TarnApplicationUtil.h - Command line -*- C++ -*-===//
//
// The process's command line as UTF-16 and as UTF-8 argc/argv. The command
// line is read from the system (/proc/self/cmdline), not from the argv a
// program received, so that every program sees its arguments the same way.
// Arguments that are not UTF-8 are read as Latin-1.
//
// Example:
//   int main(int argc, char** argv) {
//     TarnApplicationUtil::TarnUnicodeCommandlineTool cmd(argc, argv);
//     return run(cmd.GetArgc(), cmd.GetArgv());  // UTF-8, empty arguments left out
//   }
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SYSTEM_TARNAPPLICATIONUTIL_H
#define TARNUTILITIES_SYSTEM_TARNAPPLICATIONUTIL_H

#include "TarnUtilities/Export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace TarnApplicationUtil {

/// Every argument of the running process, the program name first, as UTF-16;
/// empty arguments included. argv is read only if the system's record of
/// the command line cannot be read; argc sizes the reserve.
TARN_API std::vector<std::u16string> commandline_to_wide(int argc, char** argv);

/// Converts wideArgs to UTF-8 into utf8Args (all of them, cleared first) and
/// points `pointers` at the non-empty ones, followed by a null pointer as
/// main's argv is; argc = the number of non-empty arguments, argv =
/// pointers.data(). Empty arguments are left out of argv on purpose.
///   {u"prog", u"", u"x"} => utf8Args {"prog", "", "x"}, argc 2,
///                           argv {"prog", "x", nullptr}
TARN_API void get_argc_argv(const std::vector<std::u16string>& wideArgs,
                            std::vector<std::string>& utf8Args, std::vector<char*>& pointers,
                            int& argc, char**& argv);

/// Owns the UTF-8 command line of the process and an argv pointing into it.
/// Copies own their own strings (their argv points into the copy); a move
/// takes over the strings and leaves the source empty (argc 0, argv null).
class TARN_API TarnUnicodeCommandlineTool {
public:
  TarnUnicodeCommandlineTool(int argc, char** argv);
  TarnUnicodeCommandlineTool(const TarnUnicodeCommandlineTool& other);
  TarnUnicodeCommandlineTool(TarnUnicodeCommandlineTool&& other) noexcept;
  TarnUnicodeCommandlineTool& operator=(const TarnUnicodeCommandlineTool& other);
  TarnUnicodeCommandlineTool& operator=(TarnUnicodeCommandlineTool&& other) noexcept;
  ~TarnUnicodeCommandlineTool() = default;

  /// The number of non-empty arguments.
  int GetArgc() const { return argc_; }
  /// The non-empty arguments in UTF-8, then a null pointer; valid while the
  /// object lives and is not assigned to.
  char** GetArgv() const { return argv_; }
  /// Every argument in UTF-8, empty ones included.
  const std::vector<std::string>& GetArguments() const { return utf8Args_; }

private:
  // Points pointers_ at the non-empty strings of utf8Args_ again.
  void Repoint();

  std::int32_t argc_ = 0;
  char** argv_ = nullptr;
  std::vector<std::string> utf8Args_;
  std::vector<char*> pointers_;
};

} // namespace TarnApplicationUtil

#endif // TARNUTILITIES_SYSTEM_TARNAPPLICATIONUTIL_H
