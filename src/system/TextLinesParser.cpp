//===- TextLinesParser.cpp - Whole-file lines -------------------------------===//
//
// The split is one state machine run twice over the text: first to count
// the lines (so that the line table is allocated once, at its exact size),
// then to fill the table and write the zeros. The machine only acts at line
// end characters and at the first ordinary character after a line end, so
// it jumps from one CR or LF to the next with memchr instead of looking at
// every byte.
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
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Chunk size for files read to their end (pipes, /proc files).
constexpr std::size_t kStreamChunk = 65536;

// Finds the next c at or after from, or end.
const char* Next(const char* from, const char* end, char c) {
  const void* found = std::memchr(from, c, static_cast<std::size_t>(end - from));
  return found ? static_cast<const char*>(found) : end;
}

struct SplitResult {
  std::uint64_t lines = 0;
  std::uint64_t longest = 0;
};

// Runs the machine over text[0, length). With Fill, stores each line's start
// in table and writes a zero at each line end; text[length] must be zero.
template <bool Fill>
SplitResult RunLineMachine(char* text, std::uint64_t length, char** table) {
  const char* const end = text + length;
  const char* nextLF = Next(text, end, '\n');
  const char* nextCR = Next(text, end, '\r');
  char state = 0;
  std::uint64_t pos = 0;
  std::uint64_t lastStart = 0;
  std::uint64_t lineStart = 0;
  SplitResult result;
  result.lines = 1;
  for (;;) {
    const char* special = std::min(nextLF, nextCR);
    const std::uint64_t at = static_cast<std::uint64_t>(special - text);
    if (at > pos && state != 0) {
      // An ordinary character at pos ends the line-end run.
      lastStart = lineStart = pos;
      state = 0;
    }
    if (special == end)
      break;
    const char c = *special;
    if (state == 0) {
      if (Fill) {
        table[result.lines - 1] = text + lastStart;
        text[at] = '\0';
      }
      result.longest = std::max(result.longest, at - lineStart);
      state = c;
      ++result.lines;
    } else if (c != state) {
      lastStart = lineStart = at + 1;
      state = 0;
    } else {
      lastStart = at;
      if (Fill) {
        table[result.lines - 1] = text + at;
        text[at] = '\0';
      }
      ++result.lines;
    }
    pos = at + 1;
    if (c == '\n')
      nextLF = Next(special + 1, end, '\n');
    else
      nextCR = Next(special + 1, end, '\r');
  }
  if (state != 0)
    lastStart = length;
  result.longest = std::max(result.longest, length - lineStart);
  if (Fill)
    table[result.lines - 1] = text + lastStart;
  return result;
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
  std::unique_ptr<char[]> text(new char[other.textLength_ + 1]);
  std::unique_ptr<char*[]> lines(new char*[other.numLines_]);
  std::memcpy(text.get(), other.text_.get(), other.textLength_ + 1);
  for (std::uint64_t i = 0; i < other.numLines_; ++i)
    lines[i] = text.get() + (other.lines_[i] - other.text_.get());
  text_ = std::move(text);
  lines_ = std::move(lines);
  textLength_ = other.textLength_;
  numLines_ = other.numLines_;
  longestLine_ = other.longestLine_;
  linesCapacity_ = other.numLines_;
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
  linesCapacity_ = other.linesCapacity_;
  other.SetEmpty();
  return *this;
}

TextLinesParser::~TextLinesParser() = default;

void TextLinesParser::SetEmpty() {
  text_.reset();
  lines_.reset();
  textLength_ = numLines_ = longestLine_ = linesCapacity_ = 0;
}

char* TextLinesParser::PrepareBuffer(std::uint64_t length) {
  if (length != textLength_)
    SetEmpty();
  if (!text_)
    text_.reset(new char[length + 1]);
  textLength_ = length;
  return text_.get();
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
  char* const text = text_.get();
  text[textLength_] = '\0';
  const std::uint64_t count = RunLineMachine<false>(text, textLength_, nullptr).lines;
  if (!lines_ || linesCapacity_ != count) {
    lines_.reset();
    lines_.reset(new char*[count]);
    linesCapacity_ = count;
  }
  const SplitResult result = RunLineMachine<true>(text, textLength_, lines_.get());
  numLines_ = result.lines;
  longestLine_ = result.longest;
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
