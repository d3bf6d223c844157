//===- TarnUtilities/text/TarnParCommand.h - One command block -*- C++ -*-===//
//
// One command block of a parameter file: the command line that opens it,
// the identifier set by its "ID_NAME" line and its lines as sub-commands, in
// file order. Names are looked up without regard to ASCII case.
//
//   WING                      => getName() "WING"
//     ID_NAME = left_wing     => getIdName() "left_wing"
//     span = 12.5             => getFirstSubCommandFirstValue("SPAN") "12.5"
//   END_
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNPARCOMMAND_H
#define TARNUTILITIES_TEXT_TARNPARCOMMAND_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/text/TarnParFileLine.h"
#include "TarnUtilities/text/TarnParSubCommand.h"

#include <string>
#include <vector>

class TARN_API TarnParCommand {
public:
  TarnParCommand() = default;
  /// A command named after the text of the line that opens it.
  explicit TarnParCommand(const TarnParFileLine& commandLine);

  /// Appends a sub-command and returns the stored copy.
  const TarnParSubCommand& append(const TarnParSubCommand& subCommand);
  const TarnParSubCommand& append(TarnParSubCommand&& subCommand);
  /// The identifier becomes the last token of idLine ("ID_NAME = a" => "a");
  /// a line without tokens leaves it unchanged.
  void setIdName(const TarnParFileLine& idLine);

  const std::string& getName() const { return name_; }
  const std::string& getIdName() const { return idName_; }
  /// All sub-commands in file order.
  const std::vector<TarnParSubCommand>& getSubCommands() const { return subCommands_; }
  /// The sub-commands called name (ASCII case ignored), in file order.
  std::vector<TarnParSubCommand> getSubCommands(const std::string& name) const;
  /// The second value (the first after the key) of the first sub-command
  /// called name; empty when there is no such sub-command or it has a single
  /// value.   "span = 12.5, 3" => "12.5"
  std::string getFirstSubCommandFirstValue(const std::string& name) const;
  /// Writes "Dumping: <name> IdName: <id>" and then every sub-command at
  /// trace level.
  void dumpTrace() const;

private:
  std::string name_;
  std::string idName_;
  std::vector<TarnParSubCommand> subCommands_;
};

#endif // TARNUTILITIES_TEXT_TARNPARCOMMAND_H
