//===- TarnUtilities/text/ZEL_ConfigFile.h - Configuration files -*- C++ -*-===//
//
// ZEL_ConfigFile reads files of `key = value` definitions into memory and
// answers look-ups by key. A value is a number, a quoted string, an
// identifier (read as a string) or a bracketed list of values, which may span
// several lines:
//
//   # optimiser settings
//   max_iterations = 200
//   tolerance      = 1.0e-6
//   method         = 'sqp'
//   log_file       = "run\\log.txt"
//   load_cases     = [ [1, 2.5], [2, -0.5],
//                      [3, 1e3] ]
//
// Example:
//   ZEL_ConfigFile config(u"optimisation.cfg");
//   int n = config["max_iterations"].AsInteger();            // 200
//   for (const auto& lc : config["load_cases"]) use((*lc)[1].AsDouble());
//
// Loading a second file appends its definitions; a key may be defined only
// once across all loaded files. Every syntax error throws a ZEL_Failure whose
// message names the file and the 1-based line. Keys keep the order of their
// definitions; look-up by key takes constant time on average.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_ZEL_CONFIGFILE_H
#define TARNUTILITIES_TEXT_ZEL_CONFIGFILE_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/text/ZEL_ConfigFileItem.h"

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

class TARN_API ZEL_ConfigFile {
public:
  /// An empty configuration.
  ZEL_ConfigFile();
  /// Loads the file at once (see LoadFile).
  explicit ZEL_ConfigFile(const std::u16string& fileName);
  explicit ZEL_ConfigFile(const char16_t* fileName);
  /// Copies every key and the whole tree of every item.
  ZEL_ConfigFile(const ZEL_ConfigFile& other);
  ZEL_ConfigFile(ZEL_ConfigFile&& other) noexcept;
  ZEL_ConfigFile& operator=(const ZEL_ConfigFile& other);
  ZEL_ConfigFile& operator=(ZEL_ConfigFile&& other) noexcept;
  virtual ~ZEL_ConfigFile();

  /// @name Loading
  /// @{
  /// Reads and parses a file, appending its definitions. Throws a ZEL_Failure
  /// when the file cannot be read or holds a syntax error; definitions parsed
  /// before a syntax error stay in the object. A null name reads as empty.
  void LoadFile(const std::u16string& fileName);
  void LoadFile(const char16_t* fileName);
  /// The same for a UTF-8 file name, used as it is.
  void LoadFile(const std::string& utf8FileName);
  /// Parses a zero-terminated text held in memory as if it were the contents
  /// of a file named `sourceName`, which is the name shown in messages. A
  /// null text is empty.
  ///   LoadText("a = 1\nb = [2, x]\n", "inline") => keys a, b
  void LoadText(const char* text, const std::string& sourceName);
  /// @}

  /// @name Look-up
  /// @{
  /// The item of a key. Throws a ZEL_Failure for an undefined key
  /// ("tried to access undefined configuration key <key>").
  ZEL_ConfigFileItem& operator[](std::string_view key);
  const ZEL_ConfigFileItem& operator[](std::string_view key) const;
  bool has_key(std::string_view key) const;
  /// The keys in the order of their definitions.
  const std::vector<std::string>& GetKeys() const { return keys_; }
  /// The number of definitions.
  std::size_t size() const { return keys_.size(); }
  /// @}

  /// Removes all definitions.
  void clear();

  /// Writes one line per definition, in order: key, " = ", the item (see
  /// ZEL_ConfigFileItem::print) and "\n". Loading the printed text again gives
  /// the same keys, kinds and values, as long as no string holds a double quote.
  void print(std::ostream& out) const;

private:
  friend class ZEL_detail::ConfigParser;

  /// The position of a key in keys_, or keys_.size() when it is undefined.
  std::size_t FindKey(std::string_view key) const;
  /// Appends a definition of a key that is not yet defined.
  void Append(std::string key, std::unique_ptr<ZEL_ConfigFileItem> item);
  /// Rebuilds the hash index for the current keys, with room for `expected` keys.
  void RebuildIndex(std::size_t expected);

  std::vector<std::unique_ptr<ZEL_ConfigFileItem>> items_;
  std::vector<std::string> keys_;
  /// Open-addressing hash index over keys_: each slot holds a key position + 1,
  /// or 0 when empty. Its size is 0 or a power of two at least twice the keys.
  std::vector<std::size_t> slots_;
};

TARN_API std::ostream& operator<<(std::ostream& out, const ZEL_ConfigFile& config);

#endif // TARNUTILITIES_TEXT_ZEL_CONFIGFILE_H
