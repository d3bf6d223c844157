//===- TarnUtilities/text/TarnStringUtil.h - String utilities --*- C++ -*-===//
//
// A stateless collection of functions over narrow strings, UTF-16 wide
// strings and C strings: trimming, chopping, padding, splitting, joining,
// quoting, case-insensitive search, integer text conversions, a small hash,
// hexadecimal and bit dumps, Fortran fixed-length output and UTF-8 / UTF-16
// conversion.
//
// None of these functions logs or throws on bad input; conversions report
// failure through their ZelStatusCode result. Several functions keep
// long-standing quirks that callers rely on (TrimRight leaves an all-blank
// string alone, SplitPair skips one character after the separator, ...);
// each is documented where it applies.
//
// Example:
//   std::string s = "  key = value \r\n";
//   TarnStringUtil::Trim(s);                        // "key = value"
//   std::pair<std::string, std::string> kv;
//   TarnStringUtil::SplitPair(s, "=", kv);          // {"key ", " value"}
//   int n = 0;
//   TarnStringUtil::ToInt("  -42xyz", n);           // n == -42, STATUS_OK
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNSTRINGUTIL_H
#define TARNUTILITIES_TEXT_TARNSTRINGUTIL_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/logging/ZelStatusCode.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

class FloatingPointFormatter;

class TARN_API TarnStringUtil {
public:
  TarnStringUtil() = delete;

  /// Space, tab, line feed, vertical tab, carriage return, form feed.
  static const char* const WHITE_SPACES_ALL;
  /// Space and tab.
  static const char* const WHITE_SPACES_DELIMITERS;

  /// @name Trimming and chopping
  /// All work in place and return their argument, except the get_ forms.
  /// "Blank" below means a space or a byte from 9 to 13.
  /// @{

  /// Removes leading and trailing WHITE_SPACES_ALL characters.
  ///   "  a b \r\n" => "a b",   "   " => ""
  static std::string& Trim(std::string& s);
  /// Removes leading and trailing characters of `set`; a string made only of
  /// them becomes empty. A null set removes nothing.
  ///   ("--a-b--", "-") => "a-b"
  static std::string& Trim(std::string& s, const char* set);
  /// Trims every element (WHITE_SPACES_ALL), keeping the order.
  static std::list<std::string>& Trim(std::list<std::string>& l);
  static std::vector<std::string>& Trim(std::vector<std::string>& v);
  /// Removes leading WHITE_SPACES_ALL characters.   "   " => ""
  static std::string& TrimLeft(std::string& s);
  /// Removes trailing WHITE_SPACES_ALL characters, but leaves a string made
  /// only of them unchanged (unlike TrimLeft; callers depend on it).
  ///   "ab \n" => "ab",   "   " => "   "
  static std::string& TrimRight(std::string& s);

  /// Remove the last character; an empty string is left alone.
  static std::string& chop(std::string& s);
  static std::string& chop_right(std::string& s);
  /// Removes the first character; an empty string is left alone.
  static std::string& chop_left(std::string& s);
  /// Chopped copies.
  static std::string get_chopped(const std::string& s);
  static std::string get_chopped_right(const std::string& s);
  static std::string get_chopped_left(const std::string& s);

  /// Strips the trailing run of '\n' and '\r' bytes in place and returns the
  /// new length. A null pointer gives 0.   "ab\r\n\r" => "ab", 2
  static std::size_t remove_eol(char* s);
  /// Deletes every blank byte in place, compacting the rest, and returns a
  /// pointer to the new terminating NUL (null for a null pointer).
  ///   " a\tb c " => "abc"
  static char* remove_white_spaces(char* s);
  /// Deletes every blank character.
  static std::string& remove_white_spaces(std::string& s);
  /// @}

  /// @name Padding, sizing and copying
  /// @{

  /// Prepends copies of c until the length is n; longer strings are unchanged.
  ///   ("7", 3, '0') => "007"
  static std::string& PadLeft(std::string& s, std::size_t n, char c = ' ');
  static std::u16string& PadLeft(std::u16string& s, std::size_t n, char16_t c = u' ');
  /// Appends copies of c until the length is n; longer strings are unchanged.
  static std::string& PadRight(std::string& s, std::size_t n, char c = ' ');
  /// Assigns the unsigned decimal text of v.   18446744073709551615 => same text
  static std::string& AssignSize(std::string& s, std::uint64_t v);
  /// Appends the signed decimal text of v (INT_MIN appends "-0", see String).
  static std::string& Append(std::string& s, int v);
  /// Fortran-style fixed-length output: copies min(s.size(), n) bytes to dest
  /// and fills the rest of the n bytes with spaces. Writes no NUL. A null
  /// destination writes nothing.
  ///   (5 bytes, "ab") => 'a','b',' ',' ',' '
  static void CopyToFString(char* dest, std::size_t n, const std::string& s);
  /// @}

  /// @name Joining, searching, hashing, dumping
  /// @{

  /// Joins v with sep between elements; an empty v gives "". Returns out.
  ///   ({"a","b","c"}, ", ") => "a, b, c"
  static std::string& Concat(std::string& out, const std::vector<std::string>& v,
                             const std::string& sep);
  /// Joins items[0..n) with sep; n below 1 gives "". A null item counts as an
  /// empty string, a null separator as "".
  static std::string& Concat(std::string& out, int n, const char* const* items,
                             const char* sep);
  static std::u16string& Concat(std::u16string& out, const std::vector<std::u16string>& v,
                                const std::u16string& sep);
  /// The joined string, for narrow and wide strings alike.
  ///   Concat(std::vector<std::string>{"x", "y"}, "-") => "x-y"
  template <class CharT>
  static std::basic_string<CharT>
  Concat(const std::vector<std::basic_string<CharT>>& v,
         const typename std::common_type<std::basic_string<CharT>>::type& sep) {
    std::basic_string<CharT> out;
    Concat(out, v, sep);
    return out;
  }

  /// Index of the first element equal to s, or -1 (also for a null s).
  static int Find(const std::vector<std::string>& v, const char* s);

  /// Case-insensitive (ASCII letters only) search with two deliberate limits:
  /// only the first occurrence of needle[0] in hay is tried, and a match on
  /// the last byte of hay never counts, even for a one-character needle.
  /// An empty or null needle gives -1.
  ///   ("xAbc", "ab") => 1,  ("abcab", "ac") => -1,  ("ab", "b") => -1
  static std::int64_t find_substr_nocase(const char* hay, const char* needle);

  /// A small, weakly mixing hash: h = 0x9E3779B1, then for each byte c (as a
  /// signed value) h = (h ^ c) << 1 in 32 bits.   "" => -1640531535
  static std::int32_t Hash(const std::string& s);

  /// Clears out and writes two upper-case hexadecimal digits per byte, no
  /// separators; returns out.c_str().   {0x0F, 0xA0} => "0FA0"
  static const char* DumpBufferHex(const void* bytes, std::size_t n, std::string& out);
  /// Bits of a byte, most significant first, each nibble after a space.
  ///   0xA5 => " 1010 0101"
  static std::string BinToString(unsigned char b);
  /// The four bytes of v as BinToString texts, most significant byte first
  /// (40 characters).
  static std::string BinToString(int v);

  /// The local time in the C asctime form without its newline.
  ///   "Tue Mar  5 14:03:07 2024"
  static std::string get_system_time_str();

  /// Number of empty elements at the end of v.   {"a", "", ""} => 2
  static std::size_t num_empty_trailing_strings(const std::vector<std::string>& v);
  /// @}

  /// @name Splitting
  /// The text is read as a C string: it ends at its first NUL byte.
  /// @{

  /// Clears out and appends the tokens of s (maximal runs of bytes not in
  /// `separators`), each trimmed with Trim(token, trimSet). Empty tokens are
  /// never produced by the split itself; a token made only of trim characters
  /// becomes an empty element. Returns the number of tokens.
  ///   ("a,,b, c", ",", " ") => {"a", "b", "c"}, 3
  static std::size_t Split(const std::string& s, const char* separators, const char* trimSet,
                           std::list<std::string>& out);
  /// Same without trimming.   ("  a b  ", " ") => {"a", "b"}
  static std::size_t Split(const std::string& s, const char* separators,
                           std::vector<std::string>& out);

  /// Splits s at the first occurrence of sep into out.first (before it) and
  /// out.second (from one character after its start: only one character is
  /// skipped even for a longer separator). Without an occurrence, or with an
  /// empty sep, out is {s, ""} and the result ERR_NOT_FOUND.
  ///   ("key==value", "==") => {"key", "=value"}, STATUS_OK
  static ZelStatusCode SplitPair(const std::string& s, const std::string& sep,
                                 std::pair<std::string, std::string>& out);
  /// @}

  /// @name Quoted strings
  /// @{

  /// True when s has at least 2 characters and starts and ends with q.
  static bool is_quoted_str(const std::string& s, char q = '"');
  /// Wide form; a null pointer is not quoted.
  static bool is_quoted_str(const char16_t* s, char16_t q = u'"');

  /// Adds prefix and suffix inside the quotes of s. Leading blanks and
  /// trailing WHITE_SPACES_ALL characters are dropped first.
  ///   ("\"abc\"", "x", "y") => "\"xabcy\"",   (" abc ", "x", "y") => "xabcy"
  static std::string& extend_quoted_str(std::string& s, const std::string& prefix,
                                        const std::string& suffix, char q = '"');

  /// Cuts s to exactly n characters when it is longer, keeping a closing
  /// quote: a string longer than 2 (not 2 or more) that starts and ends with
  /// q is cut to n - 1 characters and q appended. n = 0 empties s.
  ///   ("\"abcdef\"", 5) => "\"abc\"",   ("abcdef", 3) => "abc"
  static std::string& truncate_quoted_str(std::string& s, std::size_t n, char q = '"');
  /// @}

  /// @name Number to text
  /// The smallest value of a signed type prints as "-0": its negation
  /// overflows and no digit is produced (callers rely on this text).
  /// @{

  /// Signed decimal.   -42 => "-42",  0 => "0",  INT_MIN => "-0"
  static std::string String(int v);
  static std::string String(std::int64_t v);
  /// Unsigned decimal.
  static std::string String(unsigned int v);
  static std::string String(std::uint64_t v);
  /// Free format of a process-wide default FloatingPointFormatter, created
  /// once on first use (safe from any thread).   0.1 => "0.1", 1e5 => "1.0e+5"
  static std::string String(double v);
  /// Free format of the given formatter (its switches apply).
  static std::string String(double v, const FloatingPointFormatter& formatter);
  /// The most precise text of v in at most len characters, no padding.
  ///   (3.14159265, 6) => "3.1416"
  static std::string String(double v, std::size_t len, const FloatingPointFormatter& formatter);
  /// A right-aligned field of exactly len characters (blank padded); with
  /// fortranExponent the exponent is written "E+05" instead of "e+5".
  ///   (1.5, 6, false) => "   1.5",  (1.5e-7, 8, true) => " 1.5E-07"
  static std::string ToFixedFormat(double v, std::size_t len, const FloatingPointFormatter& formatter,
                                   bool fortranExponent);
  /// Each value in signed decimal followed by one space.   {1, -2} => "1 -2 "
  static std::string String(const std::list<int>& values);
  /// As the list form over p[0..n); a null p or n = 0 gives "".
  static std::string String(const int* p, std::size_t n);
  /// @}

  /// @name Text to number
  /// @{

  /// Skips blanks, reads an optional sign and decimal digits; anything else
  /// ends the number and is ignored. Digits wrap around in 32 bits without
  /// an overflow check. STATUS_OK when anything was read after the blanks
  /// (a lone sign gives 0 and STATUS_OK); otherwise out = 0, ERR_NOT_FOUND.
  ///   "  -42xyz" => -42, OK;  "+" => 0, OK;  "abc" => 0, ERR_NOT_FOUND
  static ZelStatusCode ToInt(const std::string& s, int& out);
  /// C string form; a null pointer gives 0 and ERR_NOT_FOUND.
  static ZelStatusCode ToInt(const char* s, int& out);
  /// Same as ToInt in 64 bits.
  static ZelStatusCode ToInt64(const std::string& s, std::int64_t& out);
  static ZelStatusCode ToInt64(const char* s, std::int64_t& out);
  /// Skips blanks and reads a decimal number with TarnFormatUtil::str_to_double
  /// (correctly rounded; also "inf", "infinity", "nan"). STATUS_OK when at
  /// least one character of a number was read; trailing text is ignored.
  /// Otherwise out = 0.0 and ERR_NOT_FOUND; a lone sign is not a number.
  ///   " 2.5e3 m" => 2500.0, OK;  "  " => 0.0, ERR_NOT_FOUND;  "+" => 0.0, ERR_NOT_FOUND
  static ZelStatusCode ToDouble(const std::string& s, double& out);
  /// C string form; a null pointer gives 0.0 and ERR_NOT_FOUND.
  static ZelStatusCode ToDouble(const char* s, double& out);
  /// Reads an unsigned decimal as scanf's "%zu" does: blanks, an optional
  /// sign (a '-' negates modulo 2^64), digits; values above 2^64 - 1 give
  /// 18446744073709551615. Without digits out is left as it was and the
  /// result is ERR_NOT_FOUND.
  static ZelStatusCode ToSizeT(const std::string& s, std::uint64_t& out);
  /// @}

  /// @name UTF-8 and UTF-16
  /// @{

  /// UTF-8 to UTF-16. Text that is not strict UTF-8 (bad lead or
  /// continuation bytes, truncated sequences, overlong forms, encoded
  /// surrogates, values above U+10FFFF) is read as Latin-1 instead, each byte
  /// becoming one code unit. Null or empty input gives "".
  ///   "h\xC3\xA9" => u"h\u00E9",   "h\xE9" => u"h\u00E9"
  static std::u16string utf8_to_wide(const char* p);
  static std::u16string utf8_to_wide(const std::string& s) { return utf8_to_wide(s.c_str()); }
  /// UTF-16 to UTF-8; a lone surrogate becomes U+FFFD ("\xEF\xBF\xBD").
  /// Null or empty input gives "".
  static std::string wide_to_utf8(const char16_t* p);
  static std::string wide_to_utf8(const std::u16string& s) { return wide_to_utf8(s.c_str()); }
  /// @}
};

#endif // TARNUTILITIES_TEXT_TARNSTRINGUTIL_H
