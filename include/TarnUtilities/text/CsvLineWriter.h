//===- TarnUtilities/text/CsvLineWriter.h - One CSV line --------*- C++ -*-===//
//
// Composes one line of comma-separated text in a buffer of fixed capacity
// that is allocated once. Values are appended one after the other with the
// separator between them; doubles are printed by FloatingPointFormatter
// (shortest text that reads back as the same double), integers by
// std::to_chars. Nothing is ever quoted or escaped, and the line carries no
// line end: writers add it.
//
// Example:
//   CsvLineWriter line(100, ";");
//   line.AppendValue("a");
//   line.AppendValue(1);
//   line.AppendValue(0.1);     // line.GetLine() => "a;1;0.1", 3 tokens
//   line.GetLineTokens(1, 2)   // => "1;0.1"
//
// Room is checked before each value: an integer needs at least 11 free
// characters and a double at least 25, whatever its text turns out to be;
// strings and characters are checked as they are copied. A value that does
// not fit throws std::runtime_error, and so does a NaN or an infinity while
// the Inf/NaN flag is set. The buffer is never written past its end.
//
// Two behaviours are kept on purpose:
//  * The separator goes in front of a value only when the line already has
//    characters, so an empty first token is followed by no separator:
//    "" then 7 gives "7" (and 2 tokens).
//  * With the Inf/NaN flag clear, "NaN" or "Inf" is written but not counted
//    as a token.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_CSVLINEWRITER_H
#define TARNUTILITIES_TEXT_CSVLINEWRITER_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class FloatingPointFormatter;

class TARN_API CsvLineWriter {
public:
  /// An empty line with room for `capacity` characters (plus the
  /// terminating zero) and the given separator; the Inf/NaN flag is set.
  CsvLineWriter(std::size_t capacity, const std::string& separator);
  ~CsvLineWriter();
  CsvLineWriter(const CsvLineWriter&) = delete;
  CsvLineWriter& operator=(const CsvLineWriter&) = delete;

  /// @name Appending values
  /// Each appends the separator (when the line is not empty), then the
  /// value, and counts one token. On failure they throw std::runtime_error;
  /// the line keeps everything before the failing value, including the
  /// separator, and a string keeps the part that fitted.
  /// @{
  void AppendValue(const std::string& text);
  /// A null pointer appends an empty token.
  void AppendValue(const char* text);
  void AppendValue(char c);
  ///   -42 => "-42"
  void AppendValue(int value);
  /// Free format, the shortest text that reads back exactly:
  ///   0.1 => "0.1",  1e5 => "1.0e+5",  -0.0 => "-0.0"
  void AppendValue(double value);
  /// The most precise text of the value that fits in `digits` characters,
  /// not padded; a field below 1 character gives an empty token.
  ///   (3.14159265, 6) => "3.1416"    (123456789.0, 6) => "1.2e+8"
  void AppendValue(double value, int digits);
  /// Fixed notation of the exact binary value rounded to `precision`
  /// decimals (ties to even), trailing zeros and a bare point removed;
  /// magnitudes from 1e17 on take the exponent form.
  ///   (2.675, 2) => "2.67"    (1.5, 3) => "1.5"    (2.0, 0) => "2"
  void AppendRoundedValue(double value, int precision);
  /// Scientific notation with `precision` decimals, zeros kept.
  ///   (12345.0, 2) => "1.23e+4"    (1.5, 3) => "1.500e+0"
  void AppendValueFixedFmt(double value, int precision);
  void AppendList(const std::vector<int>& values);
  void AppendList(const std::vector<double>& values);
  void AppendList(const std::vector<std::string>& values);
  /// @}

  /// @name Replacing the line
  /// Clear(), then the corresponding append.
  /// @{
  void SetValue(const std::string& text);
  void SetValue(const char* text);
  void SetValue(char c);
  void SetValue(int value);
  void SetValue(double value);
  void SetValue(double value, int digits);
  void SetList(const std::vector<int>& values);
  void SetList(const std::vector<double>& values);
  void SetList(const std::vector<std::string>& values);
  /// @}

  /// Empties the line and sets the token count to 0.
  void Clear();

  /// Replaces the separator; an empty separator is allowed.
  void SetSeparator(const std::string& separator);
  /// A null pointer sets the empty separator.
  void SetSeparator(const char* separator);
  void SetSeparator(char separator);
  const char* GetSeparator() const { return separator_.c_str(); }

  /// The line composed so far, zero-terminated.
  const char* GetLine() const { return start_; }
  /// Tokens appended since the last Clear (see the note on NaN above).
  std::uint64_t GetNumTokens() const { return numTokens_; }
  /// Characters the line can hold (the constructor's capacity).
  std::size_t GetCapacity() const { return capacity_ - 1; }
  /// Length of the line in characters.
  std::size_t GetCurrentLen() const { return static_cast<std::size_t>(end_ - start_); }
  bool IsEmpty() const { return end_ == start_; }

  /// While set (the default), NaN and infinities are refused.
  void SetInfNanFlag(bool refuse) { refuseInfNan_ = refuse; }
  bool GetInfNanFlag() const { return refuseInfNan_; }

  /// The exponent switches of the formatter that prints the doubles.
  void SetPosExpFmtSwitch(int value);
  int GetPosExpFmtSwitch() const;
  void SetNegExpFmtSwitch(int value);
  int GetNegExpFmtSwitch() const;

  /// The text from token `first` to token `last` (0-based, inclusive) with
  /// the separators between them. Tokens are found by searching for the
  /// separator, so a value containing it counts as several tokens here.
  ///   line "a;b;c;d": (1, 2) => "b;c",  (2, 9) => "c;d",  (4, 5) => ""
  /// A range starting past the last token, or with last < first, gives "";
  /// a negative first counts as 0. With an empty separator the whole line
  /// is token 0.
  std::string GetLineTokens(int first, int last) const;

private:
  void AppendSeparator(const char* noRoomMessage);
  void AppendText(const char* text, std::size_t length);
  // Appends the separator and a double printed by `print`, which writes at
  // most `maxLength` characters; the common work of every double append.
  template <typename Print>
  void AppendDouble(double value, std::size_t maxLength, Print print, const char* noRoom,
                    const char* nanMessage, const char* infMessage);
  std::size_t Room() const { return static_cast<std::size_t>(last_ - end_); }

  std::size_t capacity_; ///< characters in the buffer, terminator included
  std::uint64_t numTokens_ = 0;
  std::unique_ptr<char[]> buffer_;
  char* start_; ///< first character of the line
  char* end_;   ///< where the next character goes
  char* last_;  ///< last usable position, kept for the terminator
  std::string separator_;
  bool refuseInfNan_ = true;
  std::unique_ptr<FloatingPointFormatter> formatter_;
};

#endif // TARNUTILITIES_TEXT_CSVLINEWRITER_H
