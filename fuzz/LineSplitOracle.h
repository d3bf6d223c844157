//===- fuzz/LineSplitOracle.h - A plain line splitter ----------*- C++ -*-===//
//
// Splits a text into lines the simple way, as the readers of the library
// promise to: LF, CR, CR LF and LF CR each end one line (a line end is
// paired greedily, so "\n\n\r" is LF then LF CR), and a text ending in a
// line end has a final empty line. Also computes the longest-line figure of
// TextLinesParser, whose one oddity is that the last line is measured from
// the start of the last line that began with a character or after a
// two-character line end: "ab\n" gives 3, "ab\r\n" gives 2.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_FUZZ_LINESPLITORACLE_H
#define TARNUTILITIES_FUZZ_LINESPLITORACLE_H

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarn_fuzz {

struct SplitLine {
  std::size_t offset; // of the line's first byte in the text
  std::size_t length; // without its line end
};

struct SplitText {
  std::vector<SplitLine> lines; // none for the empty text
  std::uint64_t longest = 0;
};

inline SplitText SplitLines(std::string_view text) {
  SplitText out;
  if (text.empty())
    return out;
  std::size_t start = 0;
  // The start the last line is measured from (see above).
  std::size_t measuredFrom = 0;
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    if (c != '\n' && c != '\r') {
      ++i;
      continue;
    }
    out.lines.push_back({start, i - start});
    out.longest = std::max<std::uint64_t>(out.longest, i - start);
    const char other = c == '\n' ? '\r' : '\n';
    const bool pair = i + 1 < text.size() && text[i + 1] == other;
    i += pair ? 2 : 1;
    start = i;
    if (pair || (i < text.size() && text[i] != '\n' && text[i] != '\r'))
      measuredFrom = start;
  }
  out.lines.push_back({start, text.size() - start});
  out.longest = std::max<std::uint64_t>(out.longest, text.size() - measuredFrom);
  return out;
}

} // namespace tarn_fuzz

#endif // TARNUTILITIES_FUZZ_LINESPLITORACLE_H
