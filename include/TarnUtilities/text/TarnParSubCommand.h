//===- TarnUtilities/text/TarnParSubCommand.h - One line of a command -*- C++ -*-===//
//
// One line of a command block of a parameter file: its name, its line type,
// its text and its values. The values of a key line are its tokens, the key
// first; the values of a list are the texts of the list's lines.
//
//   "thickness = 1.5, 2"  => name "thickness", values {"thickness", "1.5", "2"},
//                            getValueLine() "1.5, 2"
//   "MATERIAL steel"      => name "MATERIAL steel", no values
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNPARSUBCOMMAND_H
#define TARNUTILITIES_TEXT_TARNPARSUBCOMMAND_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/text/TarnParFileLine.h"

#include <string>
#include <vector>

class TARN_API TarnParSubCommand {
public:
  TarnParSubCommand() = default;
  /// Built from a classified line: the name is the line's first token, or
  /// the whole line text when it has no tokens; the values are the tokens.
  explicit TarnParSubCommand(const TarnParFileLine& line);
  explicit TarnParSubCommand(TarnParFileLine&& line);
  /// The same with an explicit name.
  TarnParSubCommand(const TarnParFileLine& line, const std::string& name);

  const std::string& getName() const { return name_; }
  TarnParFileLine::LineType getLineType() const { return lineType_; }
  const std::string& getLine() const { return line_; }
  const std::vector<std::string>& getValues() const { return values_; }

  /// The text after the first "=" of the line, trimmed; the whole line
  /// trimmed when it holds no "=".   "a = 1, 2" => "1, 2";  "1 2 3" => "1 2 3"
  std::string getValueLine() const;
  /// Writes "Dumping: <line>" at trace level.
  void dumpTrace() const;

private:
  std::string name_;
  TarnParFileLine::LineType lineType_ = TarnParFileLine::EMPTY;
  std::string line_;
  std::vector<std::string> values_;
};

#endif // TARNUTILITIES_TEXT_TARNPARSUBCOMMAND_H
