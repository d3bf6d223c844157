//===- TarnParFile.cpp - The command model -----------------------------------===//
#include "TarnUtilities/text/TarnParFile.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TextLinesParser.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "text/parfile/ParFileSupport.h"
#include "text/strings/Utf8Bom.h"

#include <climits>
#include <memory>
#include <string_view>

using namespace TarnParDetail;

TarnParFile::TarnParFile(const std::u16string& fileName) : fileName_(fileName) {}

const TarnParFile& TarnParFile::Parse() {
  commands_.clear();
  TextLinesParser text;
  std::string errorText;
  if (!text.LoadTextFromFile(fileName_.c_str(), errorText))
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("The file '%s' cannot be opened.\nSystem error message: %s",
                                  TarnStringUtil::wide_to_utf8(fileName_).c_str(),
                                  errorText.c_str()),
                      kFileHeader);
  if (DebugEnabled())
    ZEL_LogMacros::debug(
        __FILE__, __LINE__, kFileHeader,
        ZEL_MESSAGE("Parsing %s", TarnStringUtil::wide_to_utf8(fileName_).c_str()).c_str());

  // Two states: outside a command only a COMMAND line matters; inside one
  // every line up to the END line is collected. Comment lines and lines of
  // undefined contents carry nothing and are skipped in both states.
  const auto sharedName = std::make_shared<const std::u16string>(fileName_);
  std::vector<TarnParFileLine> pending;
  bool insideCommand = false;
  const std::size_t lineCount = text.GetNumLines();
  for (std::size_t i = 0; i < lineCount; ++i) {
    const char* raw = i == 0 ? tarn_detail::SkipUtf8Bom(text.GetLine(0)) : text.GetLine(i);
    if (*raw == '\0')
      continue;
    const int lineNumber =
        i < static_cast<std::size_t>(INT_MAX) ? static_cast<int>(i + 1) : INT_MAX;
    TarnParFileLine line(std::string_view(raw), sharedName, lineNumber);
    const TarnParFileLine::LineType type = line.getLineType();
    if (!insideCommand) {
      if (type == TarnParFileLine::COMMAND) {
        pending.push_back(std::move(line));
        insideCommand = true;
      }
      continue;
    }
    if (type == TarnParFileLine::END) {
      CreateCommand(pending);
      pending.clear();
      insideCommand = false;
    } else if (type != TarnParFileLine::EMPTY && type != TarnParFileLine::UNDEFINED) {
      pending.push_back(std::move(line));
    }
  }
  if (insideCommand)
    ZEL_LogMacros::warning(
        __FILE__, __LINE__, kFileHeader,
        ZEL_MESSAGE("Command %s in line %d of the file '%s' has no END_ line. Ignoring it.",
                    pending.front().getLine().c_str(), pending.front().getLineNumber(),
                    TarnStringUtil::wide_to_utf8(fileName_).c_str())
            .c_str());
  return *this;
}

void TarnParFile::CreateCommand(std::vector<TarnParFileLine>& pending) {
  if (pending.empty() || pending.front().getLineType() != TarnParFileLine::COMMAND)
    return;
  TarnParCommand command(pending.front());
  for (std::size_t i = 1; i < pending.size(); ++i) {
    TarnParFileLine& line = pending[i];
    const TarnParFileLine::LineType type = line.getLineType();
    if (type == TarnParFileLine::LIST_BEGIN) {
      // A list runs to the end of its block: every later line is a value.
      for (std::size_t j = i + 1; j < pending.size(); ++j)
        line.AddToken(pending[j].getLine());
      command.append(TarnParSubCommand(line, line.getLine()));
      break;
    }
    if (type == TarnParFileLine::ID_NAME)
      command.setIdName(line);
    command.append(TarnParSubCommand(std::move(line)));
  }
  commands_.push_back(std::move(command));
}

std::vector<TarnParCommand> TarnParFile::getParCommands(const std::string& name) const {
  std::vector<TarnParCommand> found;
  for (const TarnParCommand& command : commands_)
    if (EqualsNoCase(command.getName(), name))
      found.push_back(command);
  return found;
}

const TarnParCommand* TarnParFile::findParCommandIdName(const std::string& idName) const {
  // A command without an identifier is never found, not even by "".
  if (idName.empty())
    return nullptr;
  for (const TarnParCommand& command : commands_)
    if (EqualsNoCase(command.getIdName(), idName))
      return &command;
  return nullptr;
}

TarnParCommand TarnParFile::getParCommandIdName(const std::string& idName) const {
  if (const TarnParCommand* command = findParCommandIdName(idName))
    return *command;
  throw ZEL_Failure(ZEL_Code(),
                    ZEL_MESSAGE("Could not find command with ID_NAME: %s", idName.c_str()),
                    kFileHeader);
}

void TarnParFile::dumpTrace() const {
  if (!TraceEnabled())
    return;
  ZEL_LogMacros::trace(
      __FILE__, __LINE__, kFileHeader,
      ZEL_MESSAGE("Dumping file %s", TarnStringUtil::wide_to_utf8(fileName_).c_str()).c_str());
  for (const TarnParCommand& command : commands_)
    command.dumpTrace();
}
