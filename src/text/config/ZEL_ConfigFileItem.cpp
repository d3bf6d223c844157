//===- ZEL_ConfigFileItem.cpp - One configured value ------------------------===//
//
// Typed access, deep copies, shallow comparison and printing of items.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/ZEL_ConfigFileItem.h"

#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"


namespace {
const char* const kItemHeader = "[%T|%n|%P|libzel_util|ZEL_ConfigFileItem] ";

ZEL_ConfigFileItem::ChildList CopyChildren(const ZEL_ConfigFileItem::ChildList& source) {
  ZEL_ConfigFileItem::ChildList copy;
  copy.reserve(source.size());
  for (const auto& child : source)
    copy.push_back(std::make_unique<ZEL_ConfigFileItem>(*child));
  return copy;
}
} // namespace

ZEL_ConfigFileItem::ZEL_ConfigFileItem() = default;
ZEL_ConfigFileItem::~ZEL_ConfigFileItem() = default;

ZEL_ConfigFileItem::ZEL_ConfigFileItem(const ZEL_ConfigFileItem& other)
    : text_(other.text_), isInteger_(other.isInteger_), integerValue_(other.integerValue_),
      isDouble_(other.isDouble_), doubleValue_(other.doubleValue_), isList_(other.isList_),
      children_(CopyChildren(other.children_)) {}

ZEL_ConfigFileItem::ZEL_ConfigFileItem(ZEL_ConfigFileItem&& other) noexcept = default;
ZEL_ConfigFileItem& ZEL_ConfigFileItem::operator=(ZEL_ConfigFileItem&& other) noexcept = default;

ZEL_ConfigFileItem& ZEL_ConfigFileItem::operator=(const ZEL_ConfigFileItem& other) {
  if (this != &other) {
    // Copy first, so that assigning an item from one of its own descendants
    // does not read freed children.
    ZEL_ConfigFileItem copy(other);
    *this = std::move(copy);
  }
  return *this;
}

const char* ZEL_ConfigFileItem::TypeName() const {
  if (isList_)
    return "list";
  return isDouble_ ? "double" : "string";
}

const std::int32_t& ZEL_ConfigFileItem::AsInteger() const {
  if (!isInteger_)
    throw ZEL_Failure(ZEL_Code("192117270407"),
                      ZEL_MESSAGE("ZEL_ConfigFileItem of type %s cannot be converted to int",
                                  TypeName()),
                      kItemHeader);
  return integerValue_;
}

std::int32_t& ZEL_ConfigFileItem::AsInteger() {
  return const_cast<std::int32_t&>(static_cast<const ZEL_ConfigFileItem&>(*this).AsInteger());
}

const double& ZEL_ConfigFileItem::AsDouble() const {
  if (!isDouble_)
    throw ZEL_Failure(ZEL_Code("192156270407"),
                      ZEL_MESSAGE("ZEL_ConfigFileItem of type %s cannot be converted to double",
                                  TypeName()),
                      kItemHeader);
  return doubleValue_;
}

double& ZEL_ConfigFileItem::AsDouble() {
  return const_cast<double&>(static_cast<const ZEL_ConfigFileItem&>(*this).AsDouble());
}

std::size_t ZEL_ConfigFileItem::length() const { return isList_ ? children_.size() : 1; }

const ZEL_ConfigFileItem& ZEL_ConfigFileItem::operator[](unsigned index) const {
  if (!isList_)
    throw ZEL_Failure(ZEL_Code("191920270407"), "ZEL_ConfigFileItem is not a list", kItemHeader);
  if (index >= children_.size()) {
    // The largest valid index; for an empty list this wraps to SIZE_MAX,
    // which the message shows as it is.
    const std::size_t last = children_.size() - 1;
    throw ZEL_Failure(
        ZEL_Code("191919270407"),
        ZEL_MESSAGE("Index %u of ZEL_ConfigFileItem is out of bounds (0 < index < %zu)", index,
                    last),
        kItemHeader);
  }
  return *children_[index];
}

ZEL_ConfigFileItem& ZEL_ConfigFileItem::operator[](unsigned index) {
  return const_cast<ZEL_ConfigFileItem&>(static_cast<const ZEL_ConfigFileItem&>(*this)[index]);
}

bool ZEL_ConfigFileItem::operator==(const ZEL_ConfigFileItem& other) const {
  if (isList_ != other.isList_)
    return false;
  if (isList_) {
    if (children_.size() != other.children_.size())
      return false;
    for (std::size_t i = 0; i < children_.size(); ++i)
      if (children_[i].get() != other.children_[i].get())
        return false;
  }
  if (isDouble_ != other.isDouble_ || (isDouble_ && !(doubleValue_ == other.doubleValue_)))
    return false;
  if (isInteger_ != other.isInteger_ || (isInteger_ && integerValue_ != other.integerValue_))
    return false;
  return text_ == other.text_;
}

void ZEL_ConfigFileItem::print(std::ostream& out) const {
  if (isList_) {
    out << '[';
    for (std::size_t i = 0; i < children_.size(); ++i) {
      if (i != 0)
        out << ',';
      children_[i]->print(out);
    }
    out << ']';
  } else if (isDouble_) {
    out << text_;
  } else {
    std::string quoted;
    quoted.reserve(text_.size() + 2);
    quoted += '"';
    for (char c : text_) {
      if (c == '\n') {
        quoted += "\\n";
      } else {
        if (c == '\\')
          quoted += '\\';
        quoted += c;
      }
    }
    quoted += '"';
    out << quoted;
  }
}

std::ostream& operator<<(std::ostream& out, const ZEL_ConfigFileItem& item) {
  item.print(out);
  return out;
}
