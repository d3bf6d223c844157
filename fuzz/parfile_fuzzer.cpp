//===- fuzz/parfile_fuzzer.cpp - Both parameter-file readers ----------------===//
//
// One input is a command name (its first line) and up to five files,
// separated by lines "@@": main.par, b.par, c.par, inc/d.par and e (no
// extension), written into this process's scratch directory, so that include
// lines between them resolve beside the including file and through the
// include directory inc. (scripts/fuzz.sh runs every target in an empty
// working directory, so names taken as they stand find nothing else.)
//
// The word reader reads main with the command name; where the main file has
// no include line with a name, its blocks (or its failure) must equal those
// of a plain model of the rules in docs/parfiles.md written here. Every
// file also goes through the command model, whose look-ups must agree with
// its own commands.
//
// Inputs that could name files outside the scratch directory (a "..", or a
// "/" after a blank, a comma or a quote, which may start an absolute include
// name) are skipped, so the run never reads devices or other files.
//
//===----------------------------------------------------------------------===//
#include "FuzzSupport.h"
#include "LineSplitOracle.h"

#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/TarnParFile.h"
#include "TarnUtilities/text/TarnParFileParser.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

using tarn_fuzz::Check;
using tarn_fuzz::Escaped;
using Blocks = TarnParFileParser::BlockList;

namespace {

const char* const kFileNames[] = {"main.par", "b.par", "c.par", "inc/d.par", "e"};
constexpr std::size_t kMaxFiles = 5;
constexpr std::size_t kMaxCommandName = 64;

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsWordByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool ReachesOutside(std::string_view bytes) {
  if (bytes.find("..") != std::string_view::npos)
    return true;
  for (std::size_t i = 1; i < bytes.size(); ++i)
    if (bytes[i] == '/' && (IsBlank(bytes[i - 1]) || bytes[i - 1] == ',' ||
                            bytes[i - 1] == '"' || bytes[i - 1] == '\''))
      return true;
  return false;
}

// ------------------------------------------------------------ the model
void SkipBlanks(std::string_view& s) {
  while (!s.empty() && IsBlank(s.front()))
    s.remove_prefix(1);
}

std::string Word(std::string_view& s) {
  SkipBlanks(s);
  std::string word;
  while (!s.empty() && IsWordByte(s.front())) {
    word.push_back(Lower(s.front()));
    s.remove_prefix(1);
  }
  return word;
}

// A quoted value with its quotes ("" when not closed), else the bytes up to
// the end or a '!' without blanks.
std::string Value(std::string_view& s) {
  SkipBlanks(s);
  if (!s.empty() && (s.front() == '"' || s.front() == '\'')) {
    const std::size_t close = s.find(s.front(), 1);
    if (close == std::string_view::npos) {
      s = std::string_view();
      return std::string();
    }
    std::string value(s.substr(0, close + 1));
    s.remove_prefix(close + 1);
    SkipBlanks(s);
    return value;
  }
  std::string value;
  for (; !s.empty() && s.front() != '!'; s.remove_prefix(1))
    if (!IsBlank(s.front()))
      value.push_back(s.front());
  return value;
}

struct ModelResult {
  bool modelled = true; // false: an include would be followed
  std::string failure;  // the start of the failure message, or ""
  Blocks blocks;
};

ModelResult Model(std::string_view text, const std::string& command) {
  std::vector<std::string_view> lines;
  for (const tarn_fuzz::SplitLine& line : tarn_fuzz::SplitLines(text).lines) {
    std::string_view bytes = text.substr(line.offset, line.length);
    lines.push_back(bytes.substr(0, bytes.find('\0'))); // a NUL ends the line's text
  }
  if (!lines.empty() && lines[0].substr(0, 3) == "\xEF\xBB\xBF")
    lines[0].remove_prefix(3);

  ModelResult result;
  std::string lowerCommand;
  for (char c : command)
    lowerCommand.push_back(Lower(c));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string_view rest = lines[i];
    const std::string word = Word(rest);
    if (word == "include") {
      while (!rest.empty() && (rest.front() == ',' || IsBlank(rest.front())))
        rest.remove_prefix(1);
      if (!Value(rest).empty()) {
        result.modelled = false;
        return result;
      }
      continue; // a syntax warning
    }
    if (lowerCommand.empty() || word != lowerCommand)
      continue;
    TarnParFileParser::Block block;
    for (++i;; ++i) {
      if (i == lines.size()) {
        result.failure = "End of file reached before END_ command is found";
        return result;
      }
      std::string_view line = lines[i];
      SkipBlanks(line);
      if (line.empty() || line.front() == '!' || line.front() == '#' || line.front() == '$' ||
          line.substr(0, 2) == "**")
        continue;
      std::string key = Word(line);
      if (key.compare(0, 4, "end_") == 0)
        break;
      SkipBlanks(line);
      const bool equals = !line.empty() && line.front() == '=';
      if ((key == "com" || key == "c") && !equals)
        continue;
      if (!equals) {
        result.failure = "'=' expected in line";
        return result;
      }
      line.remove_prefix(1);
      std::string value = Value(line);
      if (!line.empty() && line.front() != '!') {
        result.failure = "Unexpected symbols found in line";
        return result;
      }
      block.emplace_back(std::move(key), std::move(value));
    }
    result.blocks.push_back(std::move(block));
  }
  return result;
}

std::string Describe(const Blocks& blocks) {
  std::string out;
  for (const auto& block : blocks) {
    out += "{";
    for (const auto& [key, value] : block)
      out += " [" + Escaped(key) + "]=[" + Escaped(value) + "]";
    out += " }\n";
  }
  return out;
}

// ------------------------------------------------------------ the readers
void CheckWordReader(std::string_view mainText, const std::string& command) {
  const std::string& dir = tarn_fuzz::ScratchDir::Path();
  Blocks blocks;
  std::string failure;
  try {
    blocks = TarnParFileParser::ParseParameterFile(TarnStringUtil::utf8_to_wide(dir + "/main"),
                                                   command,
                                                   {TarnStringUtil::utf8_to_wide(dir + "/inc")});
  } catch (const ZEL_Failure& e) {
    failure = e.GetMessage();
  }
  const ModelResult model = Model(mainText, command);
  if (!model.modelled)
    return;
  if (!model.failure.empty()) {
    Check(failure.compare(0, model.failure.size(), model.failure) == 0,
          "word reader fails as the model does",
          "expected: " + model.failure + "...\ngot: " + Escaped(failure) + "\n" +
              Describe(blocks));
    return;
  }
  Check(failure.empty() && blocks == model.blocks, "word reader reads the model's blocks",
        "failure: " + Escaped(failure) + "\nexpected:\n" + Describe(model.blocks) + "got:\n" +
            Describe(blocks));
}

bool ContainsLetter(const std::string& s) {
  for (char c : s)
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))
      return true;
  return false;
}

void CheckCommandModel(const std::string& fileName) {
  TarnParFile file(TarnStringUtil::utf8_to_wide(fileName));
  file.Parse();
  const std::size_t count = file.size();
  file.dumpTrace();
  for (const TarnParCommand& command : file) {
    const std::string& name = command.getName();
    Check(ContainsLetter(name) && name.find_first_of("=,()") == std::string::npos,
          "a command is named after a command line", Escaped(name));
    Check(!file.getParCommands(name).empty(), "a command is found by its name", Escaped(name));
    const std::string& id = command.getIdName();
    if (!id.empty()) {
      const TarnParCommand* found = file.findParCommandIdName(id);
      Check(found != nullptr && found->getIdName().size() == id.size(),
            "a command is found by its identifier", Escaped(id));
      file.getParCommandIdName(id);
    }
    for (const TarnParSubCommand& sub : command.getSubCommands()) {
      const std::vector<TarnParSubCommand> named = command.getSubCommands(sub.getName());
      Check(!named.empty(), "a sub-command is found by its name", Escaped(sub.getName()));
      const std::vector<std::string>& values = named.front().getValues();
      Check(command.getFirstSubCommandFirstValue(sub.getName()) ==
                (values.size() > 1 ? values[1] : std::string()),
            "the first value is the second value of the first sub-command of that name",
            Escaped(sub.getName()));
      const std::string& line = sub.getLine();
      const std::size_t equals = line.find('=');
      std::string expected = equals == std::string::npos ? line : line.substr(equals + 1);
      TarnStringUtil::Trim(expected);
      Check(sub.getValueLine() == expected, "the value line is the text after '='",
            Escaped(line));
    }
  }
  file.Parse();
  Check(file.size() == count, "parsing again gives the same commands");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  tarn_fuzz::SilentLog::Install();
  const std::string& dir = tarn_fuzz::ScratchDir::Path();
  Check(::mkdir((dir + "/inc").c_str(), 0755) == 0, "include directory created");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  if (ReachesOutside(input))
    return -1; // not added to the corpus
  const std::size_t newline = input.find('\n');
  const std::string command(input.substr(0, std::min(newline, kMaxCommandName)));
  const std::string_view files =
      newline == std::string_view::npos ? std::string_view() : input.substr(newline + 1);
  const std::vector<std::string_view> parts = tarn_fuzz::SplitInput(files, "\n@@\n", kMaxFiles);

  for (std::size_t i = 0; i < kMaxFiles; ++i) {
    if (i < parts.size())
      tarn_fuzz::ScratchDir::Write(kFileNames[i], parts[i]);
    else
      tarn_fuzz::ScratchDir::Remove(kFileNames[i]);
  }
  CheckWordReader(parts[0], command);
  for (std::size_t i = 0; i < parts.size(); ++i)
    CheckCommandModel(tarn_fuzz::ScratchDir::Path() + "/" + kFileNames[i]);
  return 0;
}
