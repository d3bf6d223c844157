//===- TarnStringTokenizer.cpp - Reusable line splitter ---------------------===//
#include "TarnUtilities/text/TarnStringTokenizer.h"

#include <cstring>
#include <limits>
#include <stdexcept>

TarnStringTokenizer::TarnStringTokenizer(std::size_t maxLineLen, const char* separators) {
  if (maxLineLen >= std::numeric_limits<std::size_t>::max() / sizeof(char*))
    throw std::length_error("TarnStringTokenizer: maximal line length too large");
  capacity_ = static_cast<std::uint64_t>(maxLineLen) + 1;
  // Value-initialised: both arrays start zeroed.
  buffer_.reset(new char[capacity_]());
  tokens_.reset(new char*[capacity_]());
  std::memset(separators_, 0, sizeof separators_);
  if (separators != nullptr) {
    SetFlags(separators, separators_);
    separatorsSet_ = true;
  }
}

TarnStringTokenizer::~TarnStringTokenizer() = default;

void TarnStringTokenizer::SetSeparators(const char* separators) {
  std::memset(separators_, 0, sizeof separators_);
  if (separators != nullptr)
    SetFlags(separators, separators_);
  separatorsSet_ = true;
}

void TarnStringTokenizer::SetFlags(const char* chars, unsigned char* table) {
  if (chars == nullptr || table == nullptr)
    return;
  for (; *chars != '\0'; ++chars)
    table[static_cast<unsigned char>(*chars)] = 1;
}

void TarnStringTokenizer::ResetContent() {
  std::memset(buffer_.get(), 0, static_cast<std::size_t>(lineLen_));
  std::memset(tokens_.get(), 0, static_cast<std::size_t>(numTokens_) * sizeof(char*));
  numTokens_ = 0;
  lineLen_ = 0;
}

std::size_t TarnStringTokenizer::SplitLine(const char* line) {
  ResetContent();
  if (line == nullptr)
    return 0;

  // Copy at most capacity - 1 bytes; the byte after the copy is still zero
  // from ResetContent (or construction) and terminates the last token.
  char* const buf = buffer_.get();
  const std::size_t len = strnlen(line, static_cast<std::size_t>(capacity_ - 1));
  std::memcpy(buf, line, len);
  lineLen_ = static_cast<std::int64_t>(len);

  // Alternate between skipping separators and skipping a token's bytes; the
  // first separator after a token is overwritten with NUL.
  char** tokens = tokens_.get();
  std::size_t count = 0;
  const unsigned char* const sep = separators_;
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
  numTokens_ = count;
  return count;
}
