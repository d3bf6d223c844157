//===- fuzz/text_lines_fuzzer.cpp - The whole-file line loader --------------===//
//
// One input is the contents of a text file. TextLinesParser loads it from a
// file (all bytes, zero bytes included) and from memory with AssignCopyOf
// (up to the first zero byte); both must give the lines of a plain splitter
// (LineSplitOracle.h): the same count, each line starting at the same offset
// of the text and ending with a zero where its line end was, and the same
// longest-line figure. A reload of the same file (which reuses the buffer),
// a copy and a move must give the same lines again.
//
//===----------------------------------------------------------------------===//
#include "FuzzSupport.h"
#include "LineSplitOracle.h"

#include "TarnUtilities/system/TextLinesParser.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

using tarn_fuzz::Check;
using tarn_fuzz::Escaped;

namespace {

void CheckLines(const TextLinesParser& lines, std::string_view text, const char* how) {
  const tarn_fuzz::SplitText expected = tarn_fuzz::SplitLines(text);
  const std::string context = std::string(how) + ": \"" + Escaped(text) + "\"";
  Check(lines.GetTextLength() == text.size() && lines.IsEmpty() == text.empty(),
        "the text length is the input's", context);
  Check(lines.GetNumLines() == expected.lines.size(), "as many lines as the plain splitter finds",
        context + "\ngot " + std::to_string(lines.GetNumLines()) + ", expected " +
            std::to_string(expected.lines.size()));
  Check(lines.GetLongestLineLength() == expected.longest, "the longest-line figure",
        context + "\ngot " + std::to_string(lines.GetLongestLineLength()) + ", expected " +
            std::to_string(expected.longest));
  if (expected.lines.empty())
    return;
  const char* const base = lines.GetLine(0);
  for (std::size_t i = 0; i < expected.lines.size(); ++i) {
    const tarn_fuzz::SplitLine& line = expected.lines[i];
    const char* got = lines.GetLine(i);
    Check(got == base + line.offset && std::memcmp(got, text.data() + line.offset, line.length) == 0 &&
              got[line.length] == '\0',
          "each line lies where the plain splitter puts it",
          context + "\nline " + std::to_string(i));
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  tarn_fuzz::ScratchDir::Write("input.txt", text);
  const std::string fileName = tarn_fuzz::ScratchDir::Path() + "/input.txt";

  TextLinesParser lines;
  std::string error;
  Check(lines.LoadTextFromFile(fileName.c_str(), error) && error.empty(), "the file loads", error);
  CheckLines(lines, text, "file");
  Check(lines.LoadTextFromFile(fileName.c_str(), error), "the file loads again", error);
  CheckLines(lines, text, "reload");
  const TextLinesParser copy(lines);
  CheckLines(copy, text, "copy");
  const TextLinesParser moved(std::move(lines));
  CheckLines(moved, text, "move");

  const std::string untilZero(text.substr(0, text.find('\0')));
  TextLinesParser fromMemory;
  fromMemory.AssignCopyOf(untilZero.c_str());
  CheckLines(fromMemory, untilZero, "memory");
  return 0;
}
