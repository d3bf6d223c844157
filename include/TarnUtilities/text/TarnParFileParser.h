//===- TarnUtilities/text/TarnParFileParser.h - The word reader -*- C++ -*-===//
//
// Reads every block of one command from a parameter file and the files it
// includes, word by word, and returns the key/value pairs of each block in
// reading order (the blocks of an included file at the point of its include).
//
//   model.par:                       ParseParameterFile(u"model", "solver", {})
//     include, common.par            => {{{"method", "newton"}, {"tolerance", "1e-6"}},
//     SOLVER                             {{"title", "\"second run\""}}}
//       method = newton ! default
//       tolerance = 1e-6
//     END_
//     solver
//       title = "second run"
//     END_
//
// Keys and command words are read in lower case; values keep their case.
// A quoted value keeps its quotes; blanks inside an unquoted value vanish
// ("a = 1 2 3" gives "123"); "!" ends an unquoted value and starts a comment.
// Include files are looked for as named, then beside the including file,
// then under each include directory in turn; a missing include file is a
// warning. Failures (missing file, syntax error in a block, a block without
// END_, an include cycle, includes nested too deeply or too many include
// files) throw ZEL_Failure.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNPARFILEPARSER_H
#define TARNUTILITIES_TEXT_TARNPARFILEPARSER_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

class TextLinesParser;

class TARN_API TarnParFileParser {
public:
  using KeyValue = std::pair<std::string, std::string>;
  using Block = std::vector<KeyValue>;
  using BlockList = std::vector<Block>;

  /// Includes may nest this deep below the file given to ParseParameterFile.
  static constexpr int kMaxIncludeDepth = 64;
  /// At most this many include files are read for one call, so that files
  /// that include others several times cannot multiply without end.
  static constexpr int kMaxIncludedFiles = 10000;

  /// The blocks of commandName (ASCII case ignored) in fileName and its
  /// includes. A name without extension that does not exist is read with
  /// ".par" added. includeLevel only numbers the log lines (0 for a
  /// top-level file).
  static BlockList ParseParameterFile(const std::u16string& fileName,
                                      const std::string& commandName,
                                      const std::vector<std::u16string>& includeDirectories,
                                      int includeLevel = 0);

private:
  struct IncludeChain;

  static void ParseInto(std::u16string fileName, const std::string& lowerCommand,
                        const std::vector<std::u16string>& includeDirectories, int includeLevel,
                        IncludeChain& chain, BlockList& blocks);
  static Block ReadBlock(const TextLinesParser& text, std::size_t& index,
                         const std::string& fileNameUtf8);

  /// Skips blanks; returns the following run of letters, digits and "_" in
  /// lower case and moves past it, or "" without moving past anything else.
  static std::string GetNextWordInLowerCase(const char*& cursor);
  /// The file name of an "include" line ("include, name", "include name"),
  /// or "" with the cursor at the end of the line for any other line.
  static std::string GetIncludeFileName(const char*& cursor);
  /// A quoted value with its quotes, or the words up to the end of the line
  /// or a "!" joined without blanks; "" for a quote that is not closed.
  static std::string GetNextStringValue(const char*& cursor);
};

#endif // TARNUTILITIES_TEXT_TARNPARFILEPARSER_H
