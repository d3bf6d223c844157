//===- TarnUtilities/text/TarnStringTokenizer.h - Line splitter -*- C++ -*-===//
//
// A reusable tokenizer for lines of bounded length: it allocates its line
// buffer and token array once, for the maximal line length, and splits each
// line by copying it and overwriting the separators that end tokens with NUL.
// Tokens are pointers into that copy, valid until the next SplitLine or
// ResetContent. Tokens are the maximal runs of non-separator bytes: runs of
// separators collapse, and leading or trailing separators yield nothing, so
// no token is ever empty. Lines longer than the maximal length are cut
// silently.
//
// Example:
//   TarnStringTokenizer tok(80, " ,");
//   tok.SplitLine(" a, b  c,");   // NumTokens() == 3
//   tok.GetToken(1);              // "b"
//
// A tokenizer belongs to one thread at a time.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNSTRINGTOKENIZER_H
#define TARNUTILITIES_TEXT_TARNSTRINGTOKENIZER_H

#include "TarnUtilities/Export.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

class TARN_API TarnStringTokenizer {
public:
  /// Number of entries of a separator table: one flag per byte value.
  static constexpr std::size_t kTableSize = 256;

  /// Prepares for lines of up to maxLineLen bytes. A non-null separators
  /// string sets the separator set; without one no byte separates.
  /// Throws std::length_error when maxLineLen + 1 does not fit a size_t.
  explicit TarnStringTokenizer(std::size_t maxLineLen, const char* separators = nullptr);
  ~TarnStringTokenizer();

  TarnStringTokenizer(const TarnStringTokenizer&) = delete;
  TarnStringTokenizer& operator=(const TarnStringTokenizer&) = delete;

  /// Replaces the separator set by the bytes of separators (null: none).
  void SetSeparators(const char* separators);
  /// Sets table[b] = 1 for every byte b of chars; other entries are kept.
  /// table must hold kTableSize entries.
  static void SetFlags(const char* chars, unsigned char* table);
  /// True when c is a separator.
  bool IsSeparator(unsigned char c) const { return separators_[c] != 0; }
  /// True once a separator set has been given.
  bool HasSeparators() const { return separatorsSet_; }

  /// Splits a copy of line (cut at MaxLineLen bytes) into tokens and returns
  /// their number. A null line gives no tokens.
  std::size_t SplitLine(const char* line);

  std::size_t NumTokens() const { return static_cast<std::size_t>(numTokens_); }
  /// Token i, NUL-terminated. Like std::vector::operator[], the index is
  /// checked only by an assertion in debug builds.
  const char* GetToken(std::size_t i) const {
    assert(i < numTokens_ && "TarnStringTokenizer::GetToken: token index out of range");
    return tokens_[i];
  }
  /// Assigns token i to out (index checked as above).
  void GetToken(std::size_t i, std::string& out) const { out.assign(GetToken(i)); }

  /// The longest line kept whole.
  std::size_t MaxLineLen() const { return static_cast<std::size_t>(capacity_ - 1); }

  /// Forgets the current line and its tokens.
  void ResetContent();

private:
  void UpdateSoleSeparator(const char* chars);
  static std::size_t SplitAtTable(char* buf, std::size_t len, const unsigned char* sep,
                                  char** tokens);
  static std::size_t SplitAtByte(char* buf, std::size_t len, char sep, char** tokens);

  std::uint64_t capacity_;          // maximal line length + 1
  std::unique_ptr<char[]> buffer_;  // copy of the line, token ends set to NUL
  std::unique_ptr<char*[]> tokens_; // token starts inside buffer_
  std::uint64_t numTokens_ = 0;
  std::int64_t lineLen_ = 0;        // bytes copied from the current line
  unsigned char separators_[kTableSize];
  bool separatorsSet_ = false;
  int singleSeparator_ = -1;        // the byte when the set has exactly one
};

#endif // TARNUTILITIES_TEXT_TARNSTRINGTOKENIZER_H
