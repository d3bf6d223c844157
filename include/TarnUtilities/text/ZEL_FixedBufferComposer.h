//===- TarnUtilities/text/ZEL_FixedBufferComposer.h - Bounded text -*- C++ -*-===//
//
// ZEL_FixedBufferComposer composes a line of text into a buffer of fixed
// capacity: numbers are printed by its own FloatingPointFormatter, and every
// Append either fits whole or throws ZEL_Failure and leaves the text as it
// was. NaN and infinities are refused rather than printed.
//
// Example:
//   ZEL_FixedBufferComposer line(32);
//   line.Append(3); line.Append(", "); line.Append(0.1);   // "3, 0.1"
//   line.AppendFixed(2.5, 2);                              // "3, 0.12.50"
//   ZEL_FixedBufferComposer tiny(2);
//   tiny.Append(123);       // throws: no room for three characters
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_ZEL_FIXEDBUFFERCOMPOSER_H
#define TARNUTILITIES_TEXT_ZEL_FIXEDBUFFERCOMPOSER_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/text/FloatingPointFormatter.h"

#include <cstddef>
#include <memory>
#include <string>

class TARN_API ZEL_FixedBufferComposer {
public:
  /// A composer for up to `capacity` characters (a terminator is kept
  /// beyond them).
  explicit ZEL_FixedBufferComposer(size_t capacity);
  ZEL_FixedBufferComposer(const ZEL_FixedBufferComposer& other);
  ZEL_FixedBufferComposer& operator=(const ZEL_FixedBufferComposer& other);
  virtual ~ZEL_FixedBufferComposer();

  /// Signed decimal: -42 => "-42".
  void Append(int value);
  /// Free format of the float's own shortest digits: 0.1f => "0.1".
  void Append(float value);
  /// Free format: 100000.0 => "1.0e+5".
  void Append(double value);
  /// Fixed precision: (2.5, 2) => "2.50".
  void AppendFixed(double value, int precision);
  /// Fixed precision with trailing zeros trimmed: (2.5, 3) => "2.5".
  void AppendRounded(double value, int precision);
  /// Scientific: (12345.0, 2) => "1.23e+4".
  void AppendScientific(double value, int precision,
                        FloatingPointFormatter::ExponentStyle style = FloatingPointFormatter::EXP_LOWER);
  void Append(char c);
  void Append(const char* text);
  void Append(const std::string& text);
  /// Empties the text.
  void Reset();

  const char* GetBuffer() const { return m_Buffer.get(); }
  std::string GetString() const { return std::string(m_Buffer.get(), m_Length); }
  size_t GetLength() const { return m_Length; }
  size_t GetCapacity() const { return m_Capacity; }
  FloatingPointFormatter& GetFormatter() { return m_Formatter; }

private:
  /// Appends text[0..n) or throws `message` when it does not fit.
  void AppendChecked(const char* text, size_t n, const char* message);

  std::unique_ptr<char[]> m_Buffer;
  size_t m_Capacity;
  size_t m_Length;
  FloatingPointFormatter m_Formatter;
};

#endif // TARNUTILITIES_TEXT_ZEL_FIXEDBUFFERCOMPOSER_H
