//===- TarnUtilities/text/TarnParFile.h - The command model ----*- C++ -*-===//
//
// The command model of one parameter file. Parse() loads the whole file,
// classifies every line (TarnParFileLine) and groups the lines between a
// command line and its "END_" line into a TarnParCommand. Lines outside a
// command block are ignored; comment lines and lines of undefined contents
// inside a block are skipped; a "list_begin" line swallows every following
// line of its block as list values. Include lines are not followed here:
// TarnParFileParser reads a command across include files.
//
//   TarnParFile file(u"model.par");
//   file.Parse();
//   for (const TarnParCommand& command : file)          // file order
//     std::cout << command.getName() << " " << command.getIdName() << "\n";
//   TarnParCommand wing = file.getParCommandIdName("left_wing");
//   std::string span = wing.getFirstSubCommandFirstValue("span");
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNPARFILE_H
#define TARNUTILITIES_TEXT_TARNPARFILE_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/text/TarnParCommand.h"
#include "TarnUtilities/text/TarnParFileLine.h"

#include <cstddef>
#include <string>
#include <vector>

class TARN_API TarnParFile {
public:
  using const_iterator = std::vector<TarnParCommand>::const_iterator;

  explicit TarnParFile(const std::u16string& fileName);

  /// Loads and groups the file, replacing the commands of an earlier Parse.
  /// Throws ZEL_Failure "The file '<name>' cannot be opened.\nSystem error
  /// message: <text>" when the file cannot be read. A command without its
  /// END_ line at the end of the file is dropped with a warning.
  const TarnParFile& Parse();

  /// All commands whose name equals name (ASCII case ignored), in file order.
  std::vector<TarnParCommand> getParCommands(const std::string& name) const;
  /// The first command whose identifier equals idName (ASCII case ignored).
  /// Throws ZEL_Failure "Could not find command with ID_NAME: <idName>" when
  /// there is none.
  TarnParCommand getParCommandIdName(const std::string& idName) const;
  /// The same lookup without a failure: null when there is no such command.
  const TarnParCommand* findParCommandIdName(const std::string& idName) const;

  const std::u16string& getFileName() const { return fileName_; }
  const std::vector<TarnParCommand>& getCommands() const { return commands_; }
  std::size_t size() const { return commands_.size(); }
  bool empty() const { return commands_.empty(); }
  const_iterator begin() const { return commands_.begin(); }
  const_iterator end() const { return commands_.end(); }

  /// Writes "Dumping file <name>" and then every command at trace level.
  void dumpTrace() const;

private:
  void CreateCommand(std::vector<TarnParFileLine>& pending);

  std::u16string fileName_;
  std::vector<TarnParCommand> commands_;
};

#endif // TARNUTILITIES_TEXT_TARNPARFILE_H
