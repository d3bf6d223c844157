//===- TextLinesParser.cpp - Whole-file lines -------------------------------===//
//
// The split makes two passes over the text: the first counts the lines (so
// that the line table is allocated once, at its exact size), the second runs
// a state machine that fills the table and writes the zeros. Both look at 64
// bytes at a time: SSE2 compares give masks of the LF and CR bytes, and the
// machine is stepped only at those bytes. A text without CR (the usual case)
// is counted by adding up the LF masks alone; with CR the machine counts.
//
// The machine, with `state` the line-end character being processed (0 for
// none), `lastStart` where the current line starts and `lineStart` the
// position the longest-line figure measures from:
//   ordinary char at p, state set:    line starts at p, lineStart = p, state = 0
//   CR/LF at p, state 0:              line ends at p, measure p - lineStart,
//                                     state = that char
//   the other of CR/LF, state set:    the pair is one line end; the next line
//                                     starts at p + 1 (lineStart too), state = 0
//   the same CR/LF again:             an empty line at p (starts and ends at p);
//                                     lineStart stays, state stays
// At the end of the text a pending line end starts a last, empty line at the
// end, without moving lineStart; then length - lineStart is measured. This
// is what makes "ab\n" measure 3 and "ab\n\n" measure 4.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TextLinesParser.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

// Chunk size for files read to their end (pipes, /proc files).
constexpr std::size_t kStreamChunk = 65536;

// Computes the masks of the LF and CR bytes among the n <= 64 bytes at p
// (bit i for byte i). Bytes past n are not read.
void BlockMasks(const char* p, std::uint64_t n, std::uint64_t& lf, std::uint64_t& cr) {
  alignas(16) char tail[64];
  if (n < 64) {
    std::memset(tail, 0, sizeof tail);
    std::memcpy(tail, p, static_cast<std::size_t>(n));
    p = tail;
  }
#if defined(__SSE2__)
  const __m128i lfs = _mm_set1_epi8('\n');
  const __m128i crs = _mm_set1_epi8('\r');
  lf = cr = 0;
  for (int k = 0; k < 4; ++k) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * k));
    lf |= std::uint64_t(std::uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(v, lfs)))) << (16 * k);
    cr |= std::uint64_t(std::uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(v, crs)))) << (16 * k);
  }
#else
  lf = cr = 0;
  for (int i = 0; i < 64; ++i) {
    lf |= std::uint64_t(p[i] == '\n') << i;
    cr |= std::uint64_t(p[i] == '\r') << i;
  }
#endif
}

// Counts the LF bytes of the text and tells whether it holds any CR.
void CountLineEndBytes(const char* text, std::uint64_t length, std::uint64_t& lfCount,
                       bool& anyCR) {
  lfCount = 0;
  std::uint64_t crSeen = 0;
  for (std::uint64_t base = 0; base < length; base += 64) {
    std::uint64_t lf, cr;
    BlockMasks(text + base, std::min<std::uint64_t>(64, length - base), lf, cr);
    lfCount += static_cast<std::uint64_t>(__builtin_popcountll(lf));
    crSeen |= cr;
  }
  anyCR = crSeen != 0;
}

// Calls step(at, c) for every LF and CR of the text, in order.
template <typename Step> void ForEachLineEndByte(const char* text, std::uint64_t length, Step&& step) {
  for (std::uint64_t base = 0; base < length; base += 64) {
    std::uint64_t lf, cr;
    BlockMasks(text + base, std::min<std::uint64_t>(64, length - base), lf, cr);
    for (std::uint64_t m = lf | cr; m != 0; m &= m - 1) {
      const unsigned bit = static_cast<unsigned>(__builtin_ctzll(m));
      step(base + bit, ((lf >> bit) & 1) ? '\n' : '\r');
    }
  }
}

// The line machine described at the top of this file. With Fill it stores
// each line's start in table and writes a zero at each line end.
template <bool Fill> struct LineMachine {
  char* text;
  char** table;
  char state = 0;
  std::uint64_t pos = 0;        // first position not yet looked at
  std::uint64_t lastStart = 0;  // start of the current line
  std::uint64_t lineStart = 0;  // where the longest-line figure measures from
  std::uint64_t lines = 1;
  std::uint64_t longest = 0;

  // Ordinary characters lie between pos and at.
  void Skip(std::uint64_t at) {
    if (at > pos && state != 0) {
      lastStart = lineStart = pos;
      state = 0;
    }
  }

  void Step(std::uint64_t at, char c) {
    Skip(at);
    if (state == 0) {
      if (Fill) {
        table[lines - 1] = text + lastStart;
        text[at] = '\0';
      }
      longest = std::max(longest, at - lineStart);
      state = c;
      ++lines;
    } else if (c != state) {
      lastStart = lineStart = at + 1;
      state = 0;
    } else {
      lastStart = at;
      if (Fill) {
        table[lines - 1] = text + at;
        text[at] = '\0';
      }
      ++lines;
    }
    pos = at + 1;
  }

  void Finish(std::uint64_t length) {
    Skip(length);
    if (state != 0)
      lastStart = length;
    longest = std::max(longest, length - lineStart);
    if (Fill)
      table[lines - 1] = text + lastStart;
  }
};

// Computes the number of lines of the text.
std::uint64_t CountLines(const char* text, std::uint64_t length) {
  std::uint64_t lfCount = 0;
  bool anyCR = false;
  CountLineEndBytes(text, length, lfCount, anyCR);
  if (!anyCR)
    return lfCount + 1;  // with LF alone, every LF ends one line
  LineMachine<false> machine{const_cast<char*>(text), nullptr};
  ForEachLineEndByte(text, length, [&machine](std::uint64_t at, char c) { machine.Step(at, c); });
  machine.Finish(length);
  return machine.lines;
}

// Splits the text into table (one entry per line, as counted by
// CountLines) and returns the longest-line figure.
std::uint64_t FillLines(char* text, std::uint64_t length, char** table) {
  LineMachine<true> machine{text, table};
  ForEachLineEndByte(text, length, [&machine](std::uint64_t at, char c) { machine.Step(at, c); });
  machine.Finish(length);
  return machine.longest;
}

// Closes a descriptor when it goes out of scope.
struct FdCloser {
  int fd;
  ~FdCloser() {
    if (fd >= 0)
      ::close(fd);
  }
};

// Reads up to n bytes; returns the count read, or -1 on an error of the
// system (errno set).
long long ReadFully(int fd, char* buffer, std::uint64_t n) {
  std::uint64_t done = 0;
  while (done < n) {
    const ssize_t got = ::read(fd, buffer + done, static_cast<std::size_t>(n - done));
    if (got < 0) {
      if (errno == EINTR)
        continue;
      return -1;
    }
    if (got == 0)
      break;
    done += static_cast<std::uint64_t>(got);
  }
  return static_cast<long long>(done);
}

} // namespace

TextLinesParser::TextLinesParser(const TextLinesParser& other) { *this = other; }

TextLinesParser::TextLinesParser(TextLinesParser&& other) noexcept { *this = std::move(other); }

TextLinesParser& TextLinesParser::operator=(const TextLinesParser& other) {
  if (this == &other)
    return *this;
  if (other.IsEmpty()) {
    SetEmpty();
    return *this;
  }
  TarnSystemDetail::LargeBuffer text(other.textLength_ + 1);
  TarnSystemDetail::LargeBuffer lines(other.numLines_ * sizeof(char*));
  char* const newText = static_cast<char*>(text.data());
  char** const newLines = static_cast<char**>(lines.data());
  std::memcpy(newText, other.Text(), other.textLength_ + 1);
  for (std::uint64_t i = 0; i < other.numLines_; ++i)
    newLines[i] = newText + (other.LineTable()[i] - other.Text());
  text_ = std::move(text);
  lines_ = std::move(lines);
  textLength_ = other.textLength_;
  numLines_ = other.numLines_;
  longestLine_ = other.longestLine_;
  return *this;
}

TextLinesParser& TextLinesParser::operator=(TextLinesParser&& other) noexcept {
  if (this == &other)
    return *this;
  text_ = std::move(other.text_);
  lines_ = std::move(other.lines_);
  textLength_ = other.textLength_;
  numLines_ = other.numLines_;
  longestLine_ = other.longestLine_;
  other.SetEmpty();
  return *this;
}

TextLinesParser::~TextLinesParser() = default;

void TextLinesParser::SetEmpty() {
  text_.Release();
  lines_.Release();
  textLength_ = numLines_ = longestLine_ = 0;
}

char* TextLinesParser::PrepareBuffer(std::uint64_t length) {
  if (length != textLength_)
    SetEmpty();
  if (!text_)
    text_ = TarnSystemDetail::LargeBuffer(length + 1);
  textLength_ = length;
  return Text();
}

void TextLinesParser::AdoptText(const char* text, std::uint64_t length) {
  if (length == 0) {
    SetEmpty();
    return;
  }
  std::memcpy(PrepareBuffer(length), text, length);
  Split();
}

void TextLinesParser::Split() {
  char* const text = Text();
  text[textLength_] = '\0';
  const std::uint64_t count = CountLines(text, textLength_);
  if (lines_.size() != count * sizeof(char*)) {
    lines_.Release();
    lines_ = TarnSystemDetail::LargeBuffer(count * sizeof(char*));
  }
  longestLine_ = FillLines(text, textLength_, LineTable());
  numLines_ = count;
}

void TextLinesParser::AssignCopyOf(const char* text) {
  AdoptText(text, text ? std::strlen(text) : 0);
}

bool TextLinesParser::LoadTextFromFile(const char* utf8FileName, std::string& errorText) {
  errorText.clear();
  auto fail = [this, &errorText](int error) {
    errorText = std::strerror(error);
    SetEmpty();
    return false;
  };
  if (utf8FileName == nullptr)
    return fail(EINVAL);
  FdCloser file{::open(utf8FileName, O_RDONLY | O_CLOEXEC)};
  struct stat info {};
  if (file.fd < 0 || ::fstat(file.fd, &info) != 0)
    return fail(errno);
  if (S_ISDIR(info.st_mode))
    return fail(EISDIR);

  if (S_ISREG(info.st_mode) && info.st_size > 0) {
    // The common case: the size is known, one read fills the buffer.
    const std::uint64_t size = static_cast<std::uint64_t>(info.st_size);
    const long long got = ReadFully(file.fd, PrepareBuffer(size), size);
    if (got < 0)
      return fail(errno);
    if (static_cast<std::uint64_t>(got) != size) {
      SetEmpty();
      errorText = "the file became shorter while it was read";
      return false;
    }
    Split();
    return true;
  }

  // Pipes, devices and /proc files tell no size: read to the end.
  std::string data;
  std::unique_ptr<char[]> chunk(new char[kStreamChunk]);
  for (;;) {
    const long long got = ReadFully(file.fd, chunk.get(), kStreamChunk);
    if (got < 0)
      return fail(errno);
    data.append(chunk.get(), static_cast<std::size_t>(got));
    if (static_cast<std::size_t>(got) < kStreamChunk)
      break;
  }
  AdoptText(data.data(), data.size());
  return true;
}

bool TextLinesParser::LoadTextFromFile(const char16_t* wideFileName, std::string& errorText) {
  if (wideFileName == nullptr)
    return LoadTextFromFile(static_cast<const char*>(nullptr), errorText);
  return LoadTextFromFile(TarnStringUtil::wide_to_utf8(wideFileName).c_str(), errorText);
}

bool TextLinesParser::LoadTextFromFile(const char16_t* wideFileName) {
  std::string ignored;
  return LoadTextFromFile(wideFileName, ignored);
}

bool TextLinesParser::LoadTextFromFile(const char* utf8FileName) {
  std::string ignored;
  return LoadTextFromFile(utf8FileName, ignored);
}
