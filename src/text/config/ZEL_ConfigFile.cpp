//===- ZEL_ConfigFile.cpp - Configuration files -----------------------------===//
//
// Loading (line loader, lexer, parser), the ordered key store with its hash
// index, and printing.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include "ConfigLexer.h"
#include "ConfigParser.h"

#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TextLinesParser.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "text/strings/Utf8Bom.h"

#include <cerrno>
#include <cstring>
#include <functional>
#include <utility>

namespace {
const char* const kConfigHeader = "[%T|%n|%P|libzel_util|ZEL_ConfigFile] ";

/// Hands the lines of the whole-file loader to the lexer, with their true
/// ends, so that NUL bytes inside a line are seen as such.
class LoadedLines : public ZEL_detail::ConfigLineSource {
public:
  explicit LoadedLines(const TextLinesParser& lines) : lines_(lines) {}
  std::size_t LineCount() const override { return lines_.GetNumLines(); }

  ZEL_detail::ConfigLine Line(std::size_t index) const override {
    // The loader splits in place: a line runs up to the NUL that replaced
    // its line end, and a two-character line end leaves its second
    // character just before the next line. The last line ends with the text.
    // A byte-order mark before the first line is no text of the file.
    const char* begin =
        index == 0 ? tarn_detail::SkipUtf8Bom(lines_.GetLine(0)) : lines_.GetLine(index);
    const char* end;
    if (index + 1 < lines_.GetNumLines()) {
      end = lines_.GetLine(index + 1) - 1;
      if (end > begin && *end != '\0')
        --end;
    } else {
      end = lines_.GetLine(0) + lines_.GetTextLength();
    }
    if (end < begin || *end != '\0')
      end = begin + std::strlen(begin); // not the layout above: trust the terminator
    return {begin, end};
  }

private:
  const TextLinesParser& lines_;
};

/// Lexes all lines, then parses the tokens into `config`.
void ParseLines(const TextLinesParser& lines, const std::string& sourceName,
                ZEL_ConfigFile& config) {
  ZEL_detail::ConfigTokenList tokens;
  ZEL_detail::LexConfigLines(LoadedLines(lines), sourceName, tokens);
  ZEL_detail::ConfigParser(tokens, sourceName, config).Run();
}

std::size_t HashKey(std::string_view key) { return std::hash<std::string_view>()(key); }

std::vector<std::unique_ptr<ZEL_ConfigFileItem>>
CopyItems(const std::vector<std::unique_ptr<ZEL_ConfigFileItem>>& source) {
  std::vector<std::unique_ptr<ZEL_ConfigFileItem>> copy;
  copy.reserve(source.size());
  for (const auto& item : source)
    copy.push_back(std::make_unique<ZEL_ConfigFileItem>(*item));
  return copy;
}
} // namespace

ZEL_ConfigFile::ZEL_ConfigFile() = default;
ZEL_ConfigFile::~ZEL_ConfigFile() = default;
ZEL_ConfigFile::ZEL_ConfigFile(ZEL_ConfigFile&& other) noexcept = default;
ZEL_ConfigFile& ZEL_ConfigFile::operator=(ZEL_ConfigFile&& other) noexcept = default;

ZEL_ConfigFile::ZEL_ConfigFile(const std::u16string& fileName) { LoadFile(fileName); }
ZEL_ConfigFile::ZEL_ConfigFile(const char16_t* fileName) { LoadFile(fileName); }

ZEL_ConfigFile::ZEL_ConfigFile(const ZEL_ConfigFile& other)
    : items_(CopyItems(other.items_)), keys_(other.keys_), slots_(other.slots_) {}

ZEL_ConfigFile& ZEL_ConfigFile::operator=(const ZEL_ConfigFile& other) {
  if (this != &other) {
    ZEL_ConfigFile copy(other);
    *this = std::move(copy);
  }
  return *this;
}

void ZEL_ConfigFile::LoadFile(const char16_t* fileName) {
  LoadFile(fileName != nullptr ? std::u16string(fileName) : std::u16string());
}

void ZEL_ConfigFile::LoadFile(const std::u16string& fileName) {
  std::string name = TarnStringUtil::wide_to_utf8(fileName);
  if (fileName.find(u'\0') != std::u16string::npos)
    name.push_back('\0'); // converted up to the zero; keep it refused below
  LoadFile(name);
}

void ZEL_ConfigFile::LoadFile(const std::string& name) {
  TextLinesParser lines;
  std::string errorText;
  // A name with a zero inside names no file: refuse it rather than open the
  // file named by the part before the zero.
  const bool hasZero = name.find('\0') != std::string::npos;
  if (hasZero)
    errorText = std::strerror(EINVAL);
  if (hasZero || !lines.LoadTextFromFile(name.c_str(), errorText))
    throw ZEL_Failure(ZEL_Code("145331040507"),
                      ZEL_MESSAGE("Could not open the configuration file %s for "
                                  "reading.\nSystem error message: %s",
                                  name.c_str(), errorText.c_str()),
                      kConfigHeader);
  ParseLines(lines, name, *this);
}

void ZEL_ConfigFile::LoadText(const char* text, const std::string& sourceName) {
  TextLinesParser lines;
  lines.AssignCopyOf(text);
  ParseLines(lines, sourceName, *this);
}

std::size_t ZEL_ConfigFile::FindKey(std::string_view key) const {
  if (slots_.empty())
    return keys_.size();
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = HashKey(key) & mask;; i = (i + 1) & mask) {
    const std::size_t slot = slots_[i];
    if (slot == 0)
      return keys_.size();
    if (keys_[slot - 1] == key)
      return slot - 1;
  }
}

void ZEL_ConfigFile::RebuildIndex(std::size_t expected) {
  // Linear probing stays short while at most half of the slots are used.
  std::size_t capacity = 16;
  while (capacity < 2 * expected)
    capacity *= 2;
  slots_.assign(capacity, 0);
  const std::size_t mask = capacity - 1;
  for (std::size_t k = 0; k < keys_.size(); ++k) {
    std::size_t i = HashKey(keys_[k]) & mask;
    while (slots_[i] != 0)
      i = (i + 1) & mask;
    slots_[i] = k + 1;
  }
}

void ZEL_ConfigFile::Append(std::string key, std::unique_ptr<ZEL_ConfigFileItem> item) {
  // Everything that may throw happens before the first change.
  const std::size_t count = keys_.size() + 1;
  if (2 * count > slots_.size())
    RebuildIndex(2 * count); // doubling keeps all rebuilds together linear
  if (keys_.size() == keys_.capacity())
    keys_.reserve(2 * count);
  if (items_.size() == items_.capacity())
    items_.reserve(2 * count);
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = HashKey(key) & mask;
  while (slots_[i] != 0)
    i = (i + 1) & mask;
  slots_[i] = count;
  keys_.push_back(std::move(key));
  items_.push_back(std::move(item));
}

bool ZEL_ConfigFile::has_key(std::string_view key) const { return FindKey(key) != keys_.size(); }

const ZEL_ConfigFileItem& ZEL_ConfigFile::operator[](std::string_view key) const {
  const std::size_t position = FindKey(key);
  if (position == keys_.size())
    throw ZEL_Failure(ZEL_Code("190715270407"),
                      ZEL_MESSAGE("tried to access undefined configuration key %s",
                                  std::string(key).c_str()),
                      kConfigHeader);
  return *items_[position];
}

ZEL_ConfigFileItem& ZEL_ConfigFile::operator[](std::string_view key) {
  return const_cast<ZEL_ConfigFileItem&>(static_cast<const ZEL_ConfigFile&>(*this)[key]);
}

void ZEL_ConfigFile::clear() {
  items_.clear();
  keys_.clear();
  slots_.clear();
}

void ZEL_ConfigFile::print(std::ostream& out) const {
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    out << keys_[i] << " = ";
    items_[i]->print(out);
    out << '\n';
  }
}

std::ostream& operator<<(std::ostream& out, const ZEL_ConfigFile& config) {
  config.print(out);
  return out;
}
