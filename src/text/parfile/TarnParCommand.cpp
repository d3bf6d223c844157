//===- TarnParCommand.cpp - One command block --------------------------------===//
#include "TarnUtilities/text/TarnParCommand.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "text/parfile/ParFileSupport.h"

using namespace TarnParDetail;

TarnParCommand::TarnParCommand(const TarnParFileLine& commandLine) : name_(commandLine.getLine()) {}

const TarnParSubCommand& TarnParCommand::append(const TarnParSubCommand& subCommand) {
  subCommands_.push_back(subCommand);
  return subCommands_.back();
}

const TarnParSubCommand& TarnParCommand::append(TarnParSubCommand&& subCommand) {
  subCommands_.push_back(std::move(subCommand));
  return subCommands_.back();
}

void TarnParCommand::setIdName(const TarnParFileLine& idLine) {
  if (!idLine.getTokens().empty())
    idName_ = idLine.getTokens().back();
}

std::vector<TarnParSubCommand> TarnParCommand::getSubCommands(const std::string& name) const {
  std::vector<TarnParSubCommand> found;
  for (const TarnParSubCommand& subCommand : subCommands_)
    if (EqualsNoCase(subCommand.getName(), name))
      found.push_back(subCommand);
  return found;
}

std::string TarnParCommand::getFirstSubCommandFirstValue(const std::string& name) const {
  for (const TarnParSubCommand& subCommand : subCommands_) {
    if (!EqualsNoCase(subCommand.getName(), name))
      continue;
    // The first value is the key itself.
    const std::vector<std::string>& values = subCommand.getValues();
    return values.size() > 1 ? values[1] : std::string();
  }
  return std::string();
}

void TarnParCommand::dumpTrace() const {
  if (!TraceEnabled())
    return;
  ZEL_LogMacros::trace(
      __FILE__, __LINE__, kCommandHeader,
      ZEL_MESSAGE("Dumping: %s IdName: %s", name_.c_str(), idName_.c_str()).c_str());
  for (const TarnParSubCommand& subCommand : subCommands_)
    subCommand.dumpTrace();
}
