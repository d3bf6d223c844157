//===- tool/ParfileCommand.cpp - tarnutil parfile ------------------------===//
//
// Without a command name: the command model (TarnParFile) of the file and of
// every file it includes, as a tree: each file's commands with their
// identifiers and sub-command counts, an included file's commands at the
// point of its include line. With a command name: every block of that
// command across the include files (TarnParFileParser), as "key = value"
// lines.
//
// The command model reads one file and does not follow includes, so the
// listing finds the include lines itself: the lines the model classifies as
// includes (TarnParFileLine::INCLUDE) between command blocks, looked for
// where the word reader looks for them.
//
//===----------------------------------------------------------------------===//
#include "Commands.h"
#include "Progress.h"

#include <TarnUtilities/logging/ZEL_LogMacros.h>
#include <TarnUtilities/system/TextLinesParser.h>
#include <TarnUtilities/text/TarnParFile.h>
#include <TarnUtilities/text/TarnParFileParser.h>
#include <TarnUtilities/text/TarnStringUtil.h>

#include <cctype>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace tarnutil {
namespace {

const char kHelp[] =
    "usage: tarnutil parfile FILE [-I DIR]... [COMMAND]\n"
    "\n"
    "Without COMMAND: lists the commands of the parameter file FILE and of the\n"
    "files it includes (an included file's commands where it is included),\n"
    "each with its ID_NAME and its number of sub-commands.\n"
    "With COMMAND: prints every block of COMMAND (any case), across the include\n"
    "files, as \"key = value\" lines, blocks separated by a blank line.\n"
    "\n"
    "  -I DIR   also look for include files under DIR (may be repeated)\n"
    "\n"
    "An include file is looked for as named, beside the including file, then\n"
    "under each DIR; \".par\" is added to a name without extension. A missing\n"
    "include file is a warning. A file that cannot be read or holds a syntax\n"
    "error is reported with its name and the line, exit code 1.\n";

const char* const kHeader = "[%T|%n|%P|TarnUtilities|tarnutil parfile] ";

/// An include line between command blocks, after `commandsBefore` commands.
struct IncludeLine {
  std::size_t commandsBefore;
  std::string name;
};

bool IsFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

/// The file a name refers to: as named, else with ".par" when the name has
/// no extension; "" when neither exists.
std::string WithParExtension(const fs::path& path) {
  if (IsFile(path))
    return path.string();
  if (!path.has_extension() && IsFile(path.string() + ".par"))
    return path.string() + ".par";
  return std::string();
}

/// The name of an include line: the text after "include", commas and blanks
/// skipped, surrounding quotes removed.   "include, 'loads.par'" => loads.par
std::string IncludeName(const std::string& line) {
  std::string name = line.substr(std::strlen("include"));
  const std::size_t begin = name.find_first_not_of(", \t");
  name = begin == std::string::npos ? std::string() : name.substr(begin);
  while (!name.empty() && (name.back() == ' ' || name.back() == '\t'))
    name.pop_back();
  if (name.size() >= 2 && (name.front() == '"' || name.front() == '\'') && name.back() == name.front())
    name = name.substr(1, name.size() - 2);
  return name;
}

bool HasAsciiLetter(const char* text) {
  for (; *text != '\0'; ++text)
    if (std::isalpha(static_cast<unsigned char>(*text)))
      return true;
  return false;
}

/// The include lines of a file that the command model leaves between its
/// blocks, with the number of commands before each.
std::vector<IncludeLine> FindIncludes(const std::string& fileName) {
  TextLinesParser text;
  std::string error;
  if (!text.LoadTextFromFile(fileName.c_str(), error))
    throw InputError("cannot read " + fileName + ": " + error);
  const std::u16string wideName = TarnStringUtil::utf8_to_wide(fileName);
  std::vector<IncludeLine> includes;
  std::size_t closedBlocks = 0;
  bool inBlock = false;
  for (std::size_t i = 0; i < text.GetNumLines(); ++i) {
    const char* raw = text.GetLine(i);
    if (i == 0 && std::strncmp(raw, "\xEF\xBB\xBF", 3) == 0)
      raw += 3; // a UTF-8 byte-order mark, which the readers skip too
    // A line without a letter is neither a command, an END_ nor an include;
    // classifying it again would repeat the model's warnings about it.
    if (!HasAsciiLetter(raw))
      continue;
    const TarnParFileLine line(raw, wideName, static_cast<int>(i + 1));
    const TarnParFileLine::LineType type = line.getLineType();
    if (!inBlock && type == TarnParFileLine::COMMAND)
      inBlock = true;
    else if (inBlock && type == TarnParFileLine::END)
      inBlock = false, ++closedBlocks;
    else if (!inBlock && type == TarnParFileLine::INCLUDE)
      includes.push_back({closedBlocks, IncludeName(line.getLine())});
  }
  return includes;
}

class Lister {
public:
  explicit Lister(std::vector<std::string> includeDirectories)
      : includeDirectories_(std::move(includeDirectories)) {}

  void List(const std::string& fileName, int depth) {
    std::error_code error;
    const fs::path canonical = fs::weakly_canonical(fileName, error);
    for (std::size_t i = 0; i < chain_.size(); ++i)
      if (chain_[i].first == canonical)
        throw InputError("parameter file " + fileName + " includes itself: " + Chain(i, fileName));
    chain_.emplace_back(canonical, fileName);
    ++files_;

    TarnParFile model(TarnStringUtil::utf8_to_wide(fileName));
    model.Parse();
    if (depth == 0)
      std::printf("%s\n", fileName.c_str());
    const std::vector<IncludeLine> includes = FindIncludes(fileName);
    const std::string indent(2 * static_cast<std::size_t>(depth) + 2, ' ');
    std::size_t next = 0;
    for (std::size_t k = 0; k <= model.size(); ++k) {
      for (; next < includes.size() && (includes[next].commandsBefore <= k || k == model.size()); ++next)
        Include(includes[next].name, fileName, depth, indent);
      if (k == model.size())
        break;
      const TarnParCommand& command = model.getCommands()[k];
      const std::size_t count = command.getSubCommands().size();
      std::printf("%s%s", indent.c_str(), command.getName().c_str());
      if (!command.getIdName().empty())
        std::printf(" (%s)", command.getIdName().c_str());
      std::printf(": %zu sub-command%s\n", count, count == 1 ? "" : "s");
      ++commands_;
    }
    chain_.pop_back();
  }

  std::size_t Commands() const { return commands_; }
  std::size_t Files() const { return files_; }

private:
  void Include(const std::string& name, const std::string& from, int depth, const std::string& indent) {
    if (name.empty()) {
      ZEL_LOG_WARNING(kHeader, ("'include' without a file name in " + from).c_str());
      return;
    }
    const std::string found = Resolve(name, from);
    if (found.empty()) {
      ZEL_LOG_WARNING(kHeader, ("Include file \"" + name + "\" not found (included from " + from + ")").c_str());
      return;
    }
    if (depth + 1 > TarnParFileParser::kMaxIncludeDepth)
      throw InputError("parameter file " + found + " is included more than " +
                       std::to_string(TarnParFileParser::kMaxIncludeDepth) + " levels deep");
    if (files_ > static_cast<std::size_t>(TarnParFileParser::kMaxIncludedFiles))
      throw InputError("parameter file " + found + " is not read: more than " +
                       std::to_string(TarnParFileParser::kMaxIncludedFiles) + " include files");
    std::printf("%sinclude %s\n", indent.c_str(), found.c_str());
    List(found, depth + 1);
  }

  /// Where the word reader finds an include file: as named, beside the
  /// including file (relative names), then under each include directory.
  std::string Resolve(const std::string& name, const std::string& from) const {
    std::vector<fs::path> candidates{fs::path(name)};
    if (fs::path(name).is_relative()) {
      candidates.push_back(fs::path(from).parent_path() / name);
      for (const std::string& directory : includeDirectories_)
        candidates.push_back(fs::path(directory) / name);
    }
    for (const fs::path& candidate : candidates) {
      const std::string found = WithParExtension(candidate);
      if (!found.empty())
        return found;
    }
    return std::string();
  }

  /// "a -> b -> a" for the chain from position `from` back to `again`.
  std::string Chain(std::size_t from, const std::string& again) const {
    std::string text;
    for (std::size_t i = from; i < chain_.size(); ++i)
      text += chain_[i].second + " -> ";
    return text + again;
  }

  std::vector<std::string> includeDirectories_;
  std::vector<std::pair<fs::path, std::string>> chain_; // (canonical, as named)
  std::size_t commands_ = 0;
  std::size_t files_ = 0;
};

std::uintmax_t FileSize(const std::string& fileName) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(fileName, error);
  return error ? 0 : size;
}

void PrintBlocks(const std::string& fileName, const std::string& command,
                 const std::vector<std::string>& includeDirectories) {
  std::vector<std::u16string> directories;
  for (const std::string& directory : includeDirectories)
    directories.push_back(TarnStringUtil::utf8_to_wide(directory));
  TarnParFileParser::BlockList blocks;
  {
    // The word reader takes the whole file set in one call.
    Progress progress("reading " + fileName, 1, FileSize(fileName));
    progress.Update(0);
    blocks = TarnParFileParser::ParseParameterFile(TarnStringUtil::utf8_to_wide(fileName), command,
                                                   directories);
  }
  if (blocks.empty())
    throw InputError("no block of command " + command + " in " + fileName + " or its include files");
  for (std::size_t b = 0; b < blocks.size(); ++b) {
    std::printf("%s# %s, block %zu of %zu\n", b == 0 ? "" : "\n", command.c_str(), b + 1, blocks.size());
    for (const auto& [key, value] : blocks[b])
      std::printf("%s = %s\n", key.c_str(), value.c_str());
  }
}

int Run(Arguments& args) {
  const std::vector<std::string> includeDirectories = args.TakeAll("-I");
  const std::vector<std::string> operands = args.Rest();
  if (operands.empty() || operands.size() > 2)
    throw UsageError("parfile needs FILE and at most one COMMAND");
  if (operands.size() == 2) {
    PrintBlocks(operands[0], operands[1], includeDirectories);
    return kExitOk;
  }
  // As the word reader does, a name without extension may leave out ".par".
  std::string fileName = WithParExtension(operands[0]);
  if (fileName.empty())
    fileName = operands[0]; // the model reports the missing file
  Lister lister(includeDirectories);
  lister.List(fileName, 0);
  std::printf("%zu command%s in %zu file%s\n", lister.Commands(), lister.Commands() == 1 ? "" : "s",
              lister.Files(), lister.Files() == 1 ? "" : "s");
  return kExitOk;
}

} // namespace

const Command kParfileCommand = {"parfile", "list the commands of a parameter file, or print one command",
                                 kHelp, Run};

} // namespace tarnutil
