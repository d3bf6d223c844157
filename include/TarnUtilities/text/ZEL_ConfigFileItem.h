//===- TarnUtilities/text/ZEL_ConfigFileItem.h - One value -----*- C++ -*-===//
//
// ZEL_ConfigFileItem is one value of a configuration file: an integer, a
// double, a string or a list of further items. ZEL_ConfigFile creates the
// items while it loads a file; callers read them through the typed accessors.
//
// Example, for the definitions
//   steps  = 40
//   weight = 2.5e-1
//   method = "sqp"
//   bounds = [0, [1.5, 2], name]
// the items answer
//   config["steps"].AsInteger()     => 40
//   config["steps"].AsDouble()      => 40.0   (an integer also carries its double)
//   config["weight"].AsInteger()    => throws: "... of type double cannot be converted to int"
//   config["method"].GetText()      => sqp
//   config["bounds"].length()       => 3
//   config["bounds"][1][0].AsDouble() => 1.5
//   config["bounds"][2].GetText()   => name   (an identifier is a string)
//
// Items own their children. Copying an item copies its whole tree.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_ZEL_CONFIGFILEITEM_H
#define TARNUTILITIES_TEXT_ZEL_CONFIGFILEITEM_H

#include "TarnUtilities/Export.h"

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace ZEL_detail {
class ConfigParser;
}

class TARN_API ZEL_ConfigFileItem {
public:
  using ChildList = std::vector<std::unique_ptr<ZEL_ConfigFileItem>>;
  using const_iterator = ChildList::const_iterator;

  /// An empty string item.
  ZEL_ConfigFileItem();
  /// Copies the whole tree: the copy owns new children.
  ZEL_ConfigFileItem(const ZEL_ConfigFileItem& other);
  ZEL_ConfigFileItem(ZEL_ConfigFileItem&& other) noexcept;
  ZEL_ConfigFileItem& operator=(const ZEL_ConfigFileItem& other);
  ZEL_ConfigFileItem& operator=(ZEL_ConfigFileItem&& other) noexcept;
  virtual ~ZEL_ConfigFileItem();

  /// @name Typed access
  /// @{
  /// The integer value. Throws a ZEL_Failure for a double, string or list
  /// ("ZEL_ConfigFileItem of type double cannot be converted to int").
  std::int32_t& AsInteger();
  const std::int32_t& AsInteger() const;
  /// The double value; an integer item has one too (3 => 3.0). Throws a
  /// ZEL_Failure for a string or a list.
  double& AsDouble();
  const double& AsDouble() const;
  /// The text: a number as it was written ("+1.50e3"), the decoded contents of
  /// a string constant, the name of an identifier; empty for a list.
  const std::string& GetText() const { return text_; }
  bool IsList() const { return isList_; }
  bool IsInteger() const { return isInteger_; }
  /// True for integers and doubles.
  bool IsDouble() const { return isDouble_; }
  /// True for string constants and identifiers.
  bool IsString() const { return !isInteger_ && !isDouble_ && !isList_; }
  /// @}

  /// @name Lists
  /// @{
  /// The number of children of a list; 1 for any other item.
  std::size_t length() const;
  /// Child `index` of a list. Throws a ZEL_Failure when the item is not a list
  /// or the index is not below length().
  ZEL_ConfigFileItem& operator[](unsigned index);
  const ZEL_ConfigFileItem& operator[](unsigned index) const;
  /// Iteration over the children of a list (empty for other items). The
  /// elements are owning pointers: `for (const auto& child : item) child->AsDouble();`
  const_iterator begin() const { return children_.begin(); }
  const_iterator end() const { return children_.end(); }
  /// @}

  /// Shallow equality: kinds, values and texts agree, and two lists hold the
  /// very same child objects. A list is therefore never equal to its copy
  /// unless both are empty, and an item holding NaN is never equal to anything.
  bool operator==(const ZEL_ConfigFileItem& other) const;
  bool operator!=(const ZEL_ConfigFileItem& other) const { return !(*this == other); }

  /// Writes the item in configuration syntax:
  ///   list               => [1,2.5,"a"]
  ///   number             => its text as written
  ///   string  a\b<LF>"c  => "a\\b\n"c"   (double quotes inside are not escaped)
  void print(std::ostream& out) const;

private:
  friend class ZEL_detail::ConfigParser;

  /// The name of the item's kind in conversion messages.
  const char* TypeName() const;

  std::string text_;
  bool isInteger_ = false;
  std::int32_t integerValue_ = 0;
  bool isDouble_ = false;
  double doubleValue_ = 0.0;
  bool isList_ = false;
  ChildList children_;
};

TARN_API std::ostream& operator<<(std::ostream& out, const ZEL_ConfigFileItem& item);

#endif // TARNUTILITIES_TEXT_ZEL_CONFIGFILEITEM_H
