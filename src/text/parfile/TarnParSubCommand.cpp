//===- TarnParSubCommand.cpp - One line of a command -------------------------===//
#include "TarnUtilities/text/TarnParSubCommand.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "text/parfile/ParFileSupport.h"

namespace {
const std::string& NameOf(const TarnParFileLine& line) {
  return line.getTokens().empty() ? line.getLine() : line.getTokens().front();
}
} // namespace

TarnParSubCommand::TarnParSubCommand(const TarnParFileLine& line)
    : name_(NameOf(line)), lineType_(line.getLineType()), line_(line.getLine()),
      values_(line.getTokens()) {}

TarnParSubCommand::TarnParSubCommand(TarnParFileLine&& line)
    : name_(NameOf(line)), lineType_(line.getLineType()), line_(std::move(line.line_)),
      values_(std::move(line.tokens_)) {}

TarnParSubCommand::TarnParSubCommand(const TarnParFileLine& line, const std::string& name)
    : name_(name), lineType_(line.getLineType()), line_(line.getLine()), values_(line.getTokens()) {
}

std::string TarnParSubCommand::getValueLine() const {
  const std::size_t equals = line_.find('=');
  std::string value = equals == std::string::npos ? line_ : line_.substr(equals + 1);
  TarnStringUtil::Trim(value);
  return value;
}

void TarnParSubCommand::dumpTrace() const {
  if (!TarnParDetail::TraceEnabled())
    return;
  ZEL_LogMacros::trace(__FILE__, __LINE__, TarnParDetail::kSubCommandHeader,
                       ZEL_MESSAGE("Dumping: %s", line_.c_str()).c_str());
}
