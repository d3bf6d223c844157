//===- ZEL_CsvTableLoader.cpp - Reading CSV tables --------------------------===//
#include "TarnUtilities/text/ZEL_CsvTableLoader.h"
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/container/ZEL_IntArray.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/text/TarnFormatUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/ZEL_CsvFileFailure.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <system_error>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|ZEL_CsvTableLoader] ";
// The file is read in pieces of this many bytes.
constexpr std::size_t kReadChunk = 1 << 16;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

[[noreturn]] void FailLine(const std::string& source, std::size_t line, const char* what) {
  throw ZEL_Failure(ZEL_Code(), ZEL_MESSAGE("csv-file \"%s\", line %zu: %s", source.c_str(), line, what),
                    kHeader);
}

// Splits one line (without its line end) into its fields, unquoted. A
// quoted field must close on the line and be followed by ',' or the end.
//   ` a , "b, ""c""" ,` => {"a", "b, \"c\"", ""}
std::vector<std::string> SplitFields(const char* p, const char* end, const std::string& source,
                                     std::size_t line) {
  std::vector<std::string> fields;
  for (;;) {
    while (p != end && IsBlank(*p))
      ++p;
    std::string field;
    if (p != end && *p == '"') {
      for (++p;; ++p) {
        if (p == end)
          FailLine(source, line, "a quoted field is not closed on its line");
        if (*p == '"') {
          if (p + 1 == end || p[1] != '"')
            break;
          ++p; // "" stands for one quote
        }
        field += *p;
      }
      ++p; // the closing quote
      while (p != end && IsBlank(*p))
        ++p;
      if (p != end && *p != ',')
        FailLine(source, line, "characters follow a quoted field before the next ','");
    } else {
      const char* start = p;
      while (p != end && *p != ',')
        ++p;
      const char* last = p;
      while (last != start && IsBlank(last[-1]))
        --last;
      field.assign(start, last);
    }
    fields.push_back(std::move(field));
    if (p == end)
      return fields;
    ++p; // the ','
  }
}

std::string ReadWholeFile(const std::u16string& fileName) {
  errno = 0;
  TarnFileUtil::FilePtr file = TarnFileUtil::make_file(fileName, u"rb");
  const std::string utf8Name = TarnStringUtil::wide_to_utf8(fileName);
  if (!file)
    throw ZEL_CsvFileFailure(ZEL_Code(),
                             ZEL_MESSAGE("Could not open csv-file \"%s\" for reading: %s",
                                         utf8Name.c_str(), std::strerror(errno ? errno : ENOENT)),
                             kHeader);
  std::string text;
  std::size_t got = 0;
  do {
    text.resize(text.size() + kReadChunk);
    got = std::fread(&text[text.size() - kReadChunk], 1, kReadChunk, file.get());
    text.resize(text.size() - kReadChunk + got);
  } while (got == kReadChunk);
  if (std::ferror(file.get()))
    throw ZEL_CsvFileFailure(ZEL_Code(),
                             ZEL_MESSAGE("Could not read csv-file \"%s\"", utf8Name.c_str()),
                             kHeader);
  return text;
}

} // namespace

ZEL_CsvTableLoader::ZEL_CsvTableLoader(const std::u16string& fileName) { Load(fileName); }

void ZEL_CsvTableLoader::Load(const std::u16string& fileName) {
  *this = ZEL_CsvTableLoader();
  LoadText(ReadWholeFile(fileName), TarnStringUtil::wide_to_utf8(fileName));
}

void ZEL_CsvTableLoader::LoadText(const std::string& text, const std::string& sourceName) {
  ZEL_CsvTableLoader table;
  table.sourceName_ = sourceName;
  *this = ZEL_CsvTableLoader();
  const char* p = text.data();
  const char* const end = p + text.size();
  if (text.compare(0, 3, "\xEF\xBB\xBF") == 0)
    p += 3; // UTF-8 byte order mark
  bool haveTitles = false;
  for (std::size_t line = 1; p < end; ++line) {
    const char* lineEnd = static_cast<const char*>(std::memchr(p, '\n', end - p));
    const char* next = lineEnd ? lineEnd + 1 : end;
    if (!lineEnd)
      lineEnd = end;
    if (lineEnd != p && lineEnd[-1] == '\r')
      --lineEnd;
    const char* first = p;
    while (first != lineEnd && IsBlank(*first))
      ++first;
    if (first != lineEnd) {
      std::vector<std::string> fields = SplitFields(p, lineEnd, sourceName, line);
      if (!haveTitles) {
        table.titles_ = std::move(fields);
        haveTitles = true;
      } else {
        if (fields.size() != table.titles_.size())
          FailLine(sourceName, line,
                   ZEL_MESSAGE("%zu fields where the titles row has %zu", fields.size(),
                               table.titles_.size())
                       .c_str());
        for (const std::string& field : fields) {
          table.cells_ += field;
          table.cellEnds_.push_back(table.cells_.size());
          table.cells_ += '\0'; // so that each cell can be read as a C string
        }
        table.rowLines_.push_back(line);
      }
    }
    p = next;
  }
  *this = std::move(table);
}

void ZEL_CsvTableLoader::CheckColumn(std::size_t column) const {
  if (column >= titles_.size())
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("csv-file \"%s\" has no column with index %zu: it has %zu columns",
                                  sourceName_.c_str(), column, titles_.size()),
                      kHeader);
}

const std::string& ZEL_CsvTableLoader::GetColTitle(std::size_t column) const {
  CheckColumn(column);
  return titles_[column];
}

const char* ZEL_CsvTableLoader::CellBegin(std::size_t row, std::size_t column,
                                          std::size_t& length) const {
  const std::size_t index = row * titles_.size() + column;
  const std::size_t begin = index == 0 ? 0 : cellEnds_[index - 1] + 1;
  length = cellEnds_[index] - begin;
  return cells_.data() + begin;
}

std::string ZEL_CsvTableLoader::GetCell(std::size_t row, std::size_t column) const {
  CheckColumn(column);
  std::size_t length = 0;
  const char* begin = CellBegin(row, column, length);
  return std::string(begin, length);
}

void ZEL_CsvTableLoader::FailCell(std::size_t row, std::size_t column, const char* kind) const {
  throw ZEL_Failure(ZEL_Code(),
                    ZEL_MESSAGE("csv-file \"%s\", line %zu, column %zu (\"%s\"): \"%s\" is not %s",
                                sourceName_.c_str(), rowLines_[row], column + 1,
                                titles_[column].c_str(), GetCell(row, column).c_str(), kind),
                    kHeader);
}

void ZEL_CsvTableLoader::GetIntColData(std::size_t column, ZEL_IntArray& values) const {
  CheckColumn(column);
  ZEL_IntArray result;
  result.Reserve(GetNumRows());
  for (std::size_t row = 0; row < GetNumRows(); ++row) {
    std::size_t length = 0;
    const char* begin = CellBegin(row, column, length);
    if (!TarnFormatUtil::is_int(begin, length))
      FailCell(row, column, "an integer");
    // from_chars takes no '+'; it reports values beyond 32 bits.
    const char* digits = (*begin == '+') ? begin + 1 : begin;
    int value = 0;
    if (std::from_chars(digits, begin + length, value).ec != std::errc())
      FailCell(row, column, "a 32-bit integer");
    result.PushBack(value);
  }
  values = std::move(result);
}

void ZEL_CsvTableLoader::GetRealColData(std::size_t column, ZEL_DoubleArray& values) const {
  CheckColumn(column);
  ZEL_DoubleArray result;
  result.Reserve(GetNumRows());
  for (std::size_t row = 0; row < GetNumRows(); ++row) {
    std::size_t length = 0;
    const char* begin = CellBegin(row, column, length);
    if (TarnFormatUtil::is_valid_double(begin, length) == TarnFormatUtil::NVS_INVALID)
      FailCell(row, column, "a number");
    result.PushBack(TarnFormatUtil::str_to_double(begin, nullptr));
  }
  values = std::move(result);
}
