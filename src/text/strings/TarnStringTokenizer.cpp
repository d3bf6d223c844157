//===- TarnStringTokenizer.cpp - Reusable line splitter ---------------------===//
#include "TarnUtilities/text/TarnStringTokenizer.h"

#include <cstring>
#include <limits>
#include <stdexcept>

TarnStringTokenizer::TarnStringTokenizer(std::size_t maxLineLen, const char* separators) {
  if (maxLineLen >= std::numeric_limits<std::size_t>::max() / sizeof(char*))
    throw std::length_error("TarnStringTokenizer: maximal line length too large");
  capacity_ = static_cast<std::uint64_t>(maxLineLen) + 1;
  // Neither array needs zeroing: SplitLine terminates its copy and only the
  // first NumTokens() slots are ever read.
  buffer_.reset(new char[capacity_]);
  tokens_.reset(new char*[capacity_]);
  std::memset(separators_, 0, sizeof separators_);
  if (separators != nullptr) {
    SetFlags(separators, separators_);
    separatorsSet_ = true;
  }
  UpdateSoleSeparator(separators);
}

TarnStringTokenizer::~TarnStringTokenizer() = default;

void TarnStringTokenizer::SetSeparators(const char* separators) {
  std::memset(separators_, 0, sizeof separators_);
  if (separators != nullptr)
    SetFlags(separators, separators_);
  separatorsSet_ = true;
  UpdateSoleSeparator(separators);
}

void TarnStringTokenizer::SetFlags(const char* chars, unsigned char* table) {
  if (chars == nullptr || table == nullptr)
    return;
  for (; *chars != '\0'; ++chars)
    table[static_cast<unsigned char>(*chars)] = 1;
}

// Remembers the separator byte when chars names exactly one (perhaps
// repeated), so that SplitLine can search with memchr.
void TarnStringTokenizer::UpdateSoleSeparator(const char* chars) {
  singleSeparator_ = -1;
  if (chars == nullptr || *chars == '\0')
    return;
  for (const char* p = chars + 1; *p != '\0'; ++p)
    if (*p != *chars)
      return;
  singleSeparator_ = static_cast<unsigned char>(*chars);
}

// Splits the len bytes at buf in place: alternates between skipping
// separators and skipping a token's bytes, overwriting the first separator
// after each token with NUL. Returns the number of tokens stored.
std::size_t TarnStringTokenizer::SplitAtTable(char* buf, std::size_t len,
                                              const unsigned char* sep, char** tokens) {
  std::size_t count = 0;
  char* p = buf;
  char* const end = buf + len;
  while (p != end) {
    while (p != end && sep[static_cast<unsigned char>(*p)])
      ++p;
    if (p == end)
      break;
    tokens[count++] = p;
    while (p != end && !sep[static_cast<unsigned char>(*p)])
      ++p;
    if (p == end)
      break;
    *p++ = '\0';
  }
  return count;
}

// The same for a set of one byte, where memchr finds each token's end.
std::size_t TarnStringTokenizer::SplitAtByte(char* buf, std::size_t len, char sep,
                                             char** tokens) {
  std::size_t count = 0;
  char* p = buf;
  char* const end = buf + len;
  while (p != end) {
    while (p != end && *p == sep)
      ++p;
    if (p == end)
      break;
    tokens[count++] = p;
    auto* q = static_cast<char*>(std::memchr(p, sep, static_cast<std::size_t>(end - p)));
    if (q == nullptr)
      break;
    *q = '\0';
    p = q + 1;
  }
  return count;
}

void TarnStringTokenizer::ResetContent() {
  std::memset(buffer_.get(), 0, static_cast<std::size_t>(lineLen_));
  std::memset(tokens_.get(), 0, static_cast<std::size_t>(numTokens_) * sizeof(char*));
  numTokens_ = 0;
  lineLen_ = 0;
}

std::size_t TarnStringTokenizer::SplitLine(const char* line) {
  // The previous line and its tokens are simply overwritten: the copy is
  // terminated below and only the first numTokens_ slots are ever read.
  numTokens_ = 0;
  lineLen_ = 0;
  if (line == nullptr)
    return 0;

  // Copy at most capacity - 1 bytes; the terminator ends the last token.
  char* const buf = buffer_.get();
  const std::size_t len = strnlen(line, static_cast<std::size_t>(capacity_ - 1));
  std::memcpy(buf, line, len);
  buf[len] = '\0';
  lineLen_ = static_cast<std::int64_t>(len);

  char** const tokens = tokens_.get();
  const std::size_t count = (singleSeparator_ >= 0)
                                ? SplitAtByte(buf, len, static_cast<char>(singleSeparator_), tokens)
                                : SplitAtTable(buf, len, separators_, tokens);
  numTokens_ = count;
  return count;
}
