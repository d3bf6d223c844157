//===- TarnUtilities/text/TarnParFileLine.h - One parameter-file line -*- C++ -*-===//
//
// One line of a parameter file after reading: comments removed, blanks
// trimmed, the line classified into one of eleven types, and the lines that
// carry values (old-style commands, assignments, identifier lines) split into
// tokens. Classification is purely textual and local to the line; keywords
// are recognised in any case while the kept text keeps its case.
//
//   "MY_COMMAND"           => COMMAND
//   "ID_NAME = wing_1"     => ID_NAME,      tokens {"ID_NAME", "wing_1"}
//   "thickness = 1, 2 ,3"  => ASSIGNMENT,   tokens {"thickness", "1", "2", "3"}
//   "a = b = c"            => ASSIGNMENT,   tokens {"a", "c"} (middle parts dropped)
//   "save, x, y"           => OLD_COMMAND,  tokens {"save", "x", "y"}
//   "include, common.par"  => INCLUDE (no tokens)
//   "1.5 2 3"              => VALUES
//   "value = 3 ! note"     => ASSIGNMENT with the text "value = 3"
//   "COMPUTE all"          => EMPTY: a line beginning "com" is a comment
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNPARFILELINE_H
#define TARNUTILITIES_TEXT_TARNPARFILELINE_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TARN_API TarnParFileLine {
public:
  /// The line types, in the numbering written to the trace log.
  enum LineType : std::int32_t {
    EMPTY = 0,         ///< nothing left after comment removal
    OLD_COMMAND = 1,   ///< word with comma-separated arguments, or exit/sf_ident/save/list...
    INCLUDE = 2,       ///< "include, file"
    COMMAND = 3,       ///< a command word that opens a command block
    ASSIGNMENT = 4,    ///< key = values
    ID_NAME = 5,       ///< "id_name ..." (the identifier of the command)
    VALUES = 6,        ///< digits without letters
    LIST_BEGIN = 7,    ///< exactly "list_begin"
    END = 8,           ///< "end_..." closes the current command
    PARENTHESIZED = 9, ///< letters and a parenthesis, no "=" and no ","
    UNDEFINED = 10     ///< neither letters nor digits
  };

  /// An empty line of type EMPTY, line number 0.
  TarnParFileLine();
  /// Analyses rawLine (as read from fileName, numbered from 1): removes
  /// comments, classifies and tokenises. Logs the result at trace level,
  /// commands at debug level and lines of undefined contents as a warning.
  TarnParFileLine(const std::string& rawLine, const std::u16string& fileName, int lineNumber);

  /// The text without comments, trimmed at both ends, case kept.
  const std::string& getLine() const { return line_; }
  /// The trimmed tokens; only OLD_COMMAND, ASSIGNMENT and ID_NAME lines
  /// have tokens of their own.
  const std::vector<std::string>& getTokens() const { return tokens_; }
  LineType getLineType() const { return lineType_; }
  const std::u16string& getFileName() const;
  int getLineNumber() const { return lineNumber_; }

  /// Appends a token (the command model collects list values this way).
  void AddToken(const std::string& token);
  /// Writes "Line nr: <n> Tokens <t1>, <t2>, ..." at trace level.
  void dumpTrace() const;

private:
  friend class TarnParSubCommand; // takes the tokens over from a spent line
  friend class TarnParFile;       // shares one file name among all lines of a file

  TarnParFileLine(std::string_view rawLine, std::shared_ptr<const std::u16string> fileName,
                  int lineNumber);
  void analyse(std::string_view rawLine);
  static std::string_view trimComments(std::string_view rawLine);
  LineType determineLineType();
  void tokenize();

  LineType lineType_ = EMPTY;
  std::string line_;
  // Shared, since every line of a file carries the same name.
  std::shared_ptr<const std::u16string> fileName_;
  std::int32_t lineNumber_ = 0;
  std::vector<std::string> tokens_;
};

#endif // TARNUTILITIES_TEXT_TARNPARFILELINE_H
