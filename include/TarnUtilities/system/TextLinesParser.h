//===- TarnUtilities/system/TextLinesParser.h - Whole-file lines -*- C++ -*-===//
//
// Reads a whole text file with one read into one buffer and splits it in
// place into lines, so that readers can walk the lines by index without
// copying them. Line ends may be LF, CR, CR LF or LF CR, mixed freely; each
// line end is replaced by a zero, so every line is a C string.
//
// Rules of the split (all kept on purpose):
//   "a\r\nb" => {"a", "b"};  "a\n\nb" => {"a", "", "b"};  "a\n\rb" => {"a", "b"}
//   "a\n" => {"a", ""}: a final line end leaves a final empty line
//   CR LF and LF CR are one line end each; CR CR and LF LF are two.
// The longest-line figure counts characters between line ends, except that
// a text ending in a lone LF or CR counts the last non-empty line together
// with the line ends after it: "ab\n" gives 3, "ab\r\n" gives 2.
//
// Example:
//   TextLinesParser lines;
//   std::string error;
//   if (!lines.LoadTextFromFile("model.par", error))
//     ...  // error holds the system's text, e.g. "No such file or directory"
//   for (std::uint64_t i = 0; i < lines.GetNumLines(); ++i)
//     use(lines.GetLine(i));
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SYSTEM_TEXTLINESPARSER_H
#define TARNUTILITIES_SYSTEM_TEXTLINESPARSER_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/system/detail/LargeBuffer.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>

class TARN_API TextLinesParser {
public:
  TextLinesParser() = default;
  TextLinesParser(const TextLinesParser& other);
  TextLinesParser(TextLinesParser&& other) noexcept;
  TextLinesParser& operator=(const TextLinesParser& other);
  TextLinesParser& operator=(TextLinesParser&& other) noexcept;
  virtual ~TextLinesParser();

  /// Loads and splits a file. On failure returns false with the system's
  /// error text in errorText (e.g. "No such file or directory") and leaves
  /// the object empty; on success errorText is empty. An empty file loads
  /// as an empty object. A reload of a file of the same size reuses the
  /// buffer. The UTF-8 name is used as it is; the wide name is converted to
  /// UTF-8. Files that cannot report their size (pipes, /proc) are read to
  /// their end.
  bool LoadTextFromFile(const char16_t* wideFileName, std::string& errorText);
  bool LoadTextFromFile(const char* utf8FileName, std::string& errorText);
  bool LoadTextFromFile(const char16_t* wideFileName);
  bool LoadTextFromFile(const char* utf8FileName);

  /// Takes a copy of a zero-terminated text and splits it as a file would
  /// be. An empty or null text empties the object.
  void AssignCopyOf(const char* text);

  /// Line i as a zero-terminated string. i must be below GetNumLines()
  /// (checked only by an assertion in debug builds).
  const char* GetLine(std::size_t i) const {
    assert(i < numLines_ && "line index out of range");
    return LineTable()[i];
  }

  /// The number of lines (0 for an empty object).
  std::uint64_t GetNumLines() const { return numLines_; }
  /// The length of the longest line (see the rules above).
  std::uint64_t GetLongestLineLength() const { return longestLine_; }
  /// The length of the text in bytes.
  std::uint64_t GetTextLength() const { return textLength_; }

  /// True when no text is held.
  bool IsEmpty() const { return textLength_ == 0; }
  /// Frees buffer and line table and zeroes the counts.
  void SetEmpty();

private:
  // Holds a buffer of `length` + 1 bytes, reusing the current one when the
  // length is the same.
  char* PrepareBuffer(std::uint64_t length);
  // Copies `length` bytes of text (which may hold zeros) and splits them.
  void AdoptText(const char* text, std::uint64_t length);
  // Splits the held text into lines.
  void Split();
  char* Text() const { return static_cast<char*>(text_.data()); }
  char** LineTable() const { return static_cast<char**>(lines_.data()); }

  TarnSystemDetail::LargeBuffer text_;  // textLength_ + 1 bytes
  std::uint64_t textLength_ = 0;
  std::uint64_t numLines_ = 0;
  std::uint64_t longestLine_ = 0;
  TarnSystemDetail::LargeBuffer lines_;  // one pointer per line
};

#endif // TARNUTILITIES_SYSTEM_TEXTLINESPARSER_H
