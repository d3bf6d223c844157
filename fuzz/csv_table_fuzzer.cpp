//===- fuzz/csv_table_fuzzer.cpp - The CSV table loader ---------------------===//
//
// One input is the contents of a CSV file. It is loaded from a file and from
// memory (both must give the same table or the same failure) and compared
// with a plain model of the rules in docs/csv-arrays.md written here: the
// same titles and cells, or a failure naming the same line and cause. Every
// column is then read as integers (against strtol on the model's syntax)
// and as doubles (against strtod, bit for bit). A loaded table written back
// with every field quoted must load again into the same table.
//
//===----------------------------------------------------------------------===//
#include "FuzzSupport.h"

#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/container/ZEL_IntArray.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/ZEL_CsvTableLoader.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

using tarn_fuzz::Check;
using tarn_fuzz::Escaped;

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// ------------------------------------------------------------ the model
struct Table {
  std::string failure; // "line N: cause", or "" when the text loads
  std::vector<std::string> titles;
  std::vector<std::vector<std::string>> rows;
  std::vector<std::size_t> rowLines;
};

std::string_view TrimBlanks(std::string_view s) {
  while (!s.empty() && IsBlank(s.front()))
    s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back()))
    s.remove_suffix(1);
  return s;
}

// The fields of one line, or a cause in `failure`.
std::vector<std::string> Fields(std::string_view line, std::string& failure) {
  std::vector<std::string> fields;
  for (;;) {
    std::size_t i = 0;
    while (i < line.size() && IsBlank(line[i]))
      ++i;
    if (i < line.size() && line[i] == '"') {
      std::string field;
      for (++i;; ++i) {
        if (i == line.size()) {
          failure = "a quoted field is not closed on its line";
          return fields;
        }
        if (line[i] == '"' && !(i + 1 < line.size() && line[i + 1] == '"'))
          break;
        if (line[i] == '"')
          ++i;
        field.push_back(line[i]);
      }
      const std::size_t comma = line.find(',', i + 1);
      if (!TrimBlanks(line.substr(i + 1, comma == line.npos ? line.npos : comma - i - 1)).empty()) {
        failure = "characters follow a quoted field before the next ','";
        return fields;
      }
      fields.push_back(std::move(field));
      if (comma == std::string_view::npos)
        return fields;
      line.remove_prefix(comma + 1);
      continue;
    }
    const std::size_t comma = line.find(',');
    fields.emplace_back(TrimBlanks(line.substr(0, comma)));
    if (comma == std::string_view::npos)
      return fields;
    line.remove_prefix(comma + 1);
  }
}

Table Model(std::string_view text) {
  Table table;
  if (text.substr(0, 3) == "\xEF\xBB\xBF")
    text.remove_prefix(3);
  bool haveTitles = false;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (!line.empty() && line.back() == '\r')
      line.remove_suffix(1);
    if (TrimBlanks(line).empty())
      continue;
    std::string cause;
    std::vector<std::string> fields = Fields(line, cause);
    if (cause.empty() && haveTitles && fields.size() != table.titles.size())
      cause = std::to_string(fields.size()) + " fields where the titles row has " +
              std::to_string(table.titles.size());
    if (!cause.empty()) {
      table = Table();
      table.failure = "line " + std::to_string(number) + ": " + cause;
      return table;
    }
    if (!haveTitles) {
      table.titles = std::move(fields);
      haveTitles = true;
    } else {
      table.rows.push_back(std::move(fields));
      table.rowLines.push_back(number);
    }
  }
  return table;
}

// An optional sign and decimal digits: the value when it fits into 32 bits.
enum class IntCell { kNotInteger, kTooLarge, kInteger };
IntCell ReadInt(const std::string& cell, int& value) {
  std::size_t i = cell.empty() || (cell[0] != '+' && cell[0] != '-') ? 0 : 1;
  if (i == cell.size())
    return IntCell::kNotInteger;
  for (std::size_t k = i; k < cell.size(); ++k)
    if (!IsDigit(cell[k]))
      return IntCell::kNotInteger;
  errno = 0;
  const long long v = std::strtoll(cell.c_str(), nullptr, 10);
  if (errno == ERANGE || v < INT_MIN || v > INT_MAX)
    return IntCell::kTooLarge;
  value = static_cast<int>(v);
  return IntCell::kInteger;
}

// A decimal number (sign, digits with at most one '.', at least one digit,
// an optional exponent with at least one digit) or a sign and one of the
// words nan, inf, infinity in any case.
bool IsNumber(const std::string& cell) {
  std::size_t i = !cell.empty() && (cell[0] == '+' || cell[0] == '-') ? 1 : 0;
  std::string word;
  for (std::size_t k = i; k < cell.size(); ++k)
    word.push_back(Lower(cell[k]));
  if (word == "nan" || word == "inf" || word == "infinity")
    return true;
  std::size_t digits = 0;
  bool point = false;
  for (; i < cell.size(); ++i) {
    if (IsDigit(cell[i]))
      ++digits;
    else if (cell[i] == '.' && !point)
      point = true;
    else
      break;
  }
  if (digits == 0)
    return false;
  if (i < cell.size() && (cell[i] == 'e' || cell[i] == 'E')) {
    ++i;
    if (i < cell.size() && (cell[i] == '+' || cell[i] == '-'))
      ++i;
    const std::size_t first = i;
    while (i < cell.size() && IsDigit(cell[i]))
      ++i;
    if (i == first)
      return false;
  }
  return i == cell.size();
}

// ------------------------------------------------------------ the loader
using Loaded = tarn_fuzz::Loaded<ZEL_CsvTableLoader>;
template <typename LoadFunction> Loaded Load(LoadFunction load) {
  return tarn_fuzz::Load<ZEL_CsvTableLoader>(load);
}

bool SameTable(const ZEL_CsvTableLoader& a, const ZEL_CsvTableLoader& b) {
  if (a.GetNumColumns() != b.GetNumColumns() || a.GetNumRows() != b.GetNumRows())
    return false;
  for (std::size_t c = 0; c < a.GetNumColumns(); ++c) {
    if (a.GetColTitle(c) != b.GetColTitle(c))
      return false;
    for (std::size_t r = 0; r < a.GetNumRows(); ++r)
      if (a.GetCell(r, c) != b.GetCell(r, c))
        return false;
  }
  return true;
}

std::string Quoted(const std::string& field) {
  std::string out = "\"";
  for (char c : field)
    out += c == '"' ? std::string("\"\"") : std::string(1, c);
  return out + "\"";
}

std::string WrittenBack(const ZEL_CsvTableLoader& table) {
  std::string text;
  for (std::size_t r = 0; r <= table.GetNumRows(); ++r) {
    for (std::size_t c = 0; c < table.GetNumColumns(); ++c)
      text += (c ? ", " : "") +
              Quoted(r == 0 ? table.GetColTitle(c) : table.GetCell(r - 1, c));
    text += "\r\n";
  }
  return text;
}

// The cell messages name the line, the column from 1 and its title; like
// every message of the library they are cut to 1023 characters, and the
// texts in them end at a zero byte.
std::string CellMessage(const std::string& source, const Table& model, std::size_t row,
                        std::size_t column, const char* kind) {
  constexpr std::size_t kMessageLimit = 1023;
  return ("csv-file \"" + source + "\", line " + std::to_string(model.rowLines[row]) +
         ", column " + std::to_string(column + 1) + " (\"" +
         model.titles[column].substr(0, model.titles[column].find('\0')) + "\"): \"" +
         model.rows[row][column].substr(0, model.rows[row][column].find('\0')) + "\" is not " +
          kind)
      .substr(0, kMessageLimit);
}

void CheckColumns(const ZEL_CsvTableLoader& table, const Table& model, const std::string& source) {
  for (std::size_t c = 0; c < model.titles.size(); ++c) {
    ZEL_IntArray ints;
    std::string failure;
    try {
      table.GetIntColData(c, ints);
    } catch (const ZEL_Failure& e) {
      failure = e.GetMessage();
    }
    std::string expected;
    for (std::size_t r = 0; r < model.rows.size() && expected.empty(); ++r) {
      int value = 0;
      switch (ReadInt(model.rows[r][c], value)) {
      case IntCell::kNotInteger:
        expected = CellMessage(source, model, r, c, "an integer");
        break;
      case IntCell::kTooLarge:
        expected = CellMessage(source, model, r, c, "a 32-bit integer");
        break;
      case IntCell::kInteger:
        if (failure.empty())
          Check(ints.size == model.rows.size() && ints[r] == value,
                "an integer cell reads as strtoll reads it", Escaped(model.rows[r][c]));
      }
    }
    Check(failure == expected, "integer columns fail on their first bad cell",
          "expected: " + Escaped(expected) + "\ngot: " + Escaped(failure));

    ZEL_DoubleArray reals;
    failure.clear();
    try {
      table.GetRealColData(c, reals);
    } catch (const ZEL_Failure& e) {
      failure = e.GetMessage();
    }
    expected.clear();
    for (std::size_t r = 0; r < model.rows.size() && expected.empty(); ++r) {
      const std::string& cell = model.rows[r][c];
      if (!IsNumber(cell)) {
        expected = CellMessage(source, model, r, c, "a number");
        continue;
      }
      if (!failure.empty())
        continue;
      Check(reals.size == model.rows.size(), "a real column has one value per row");
      const double peer = std::strtod(cell.c_str(), nullptr);
      const double value = reals[r];
      Check(std::isnan(peer) ? std::isnan(value) : std::memcmp(&peer, &value, sizeof peer) == 0,
            "a number cell reads as strtod reads it", Escaped(cell));
    }
    Check(failure == expected, "real columns fail on their first bad cell",
          "expected: " + Escaped(expected) + "\ngot: " + Escaped(failure));
  }
  std::string failure;
  try {
    table.GetColTitle(model.titles.size());
  } catch (const ZEL_Failure& e) {
    failure = e.GetMessage();
  }
  Check(failure == "csv-file \"" + source + "\" has no column with index " +
                       std::to_string(model.titles.size()) + ": it has " +
                       std::to_string(model.titles.size()) + " columns",
        "a column past the last is refused", Escaped(failure));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  tarn_fuzz::SilentLog::Install();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  tarn_fuzz::ScratchDir::Write("input.csv", text);
  const std::string fileName = tarn_fuzz::ScratchDir::Path() + "/input.csv";

  const Loaded fromFile =
      Load([&](ZEL_CsvTableLoader& t) { t.Load(TarnStringUtil::utf8_to_wide(fileName)); });
  const Loaded fromText = Load([&](ZEL_CsvTableLoader& t) { t.LoadText(text, fileName); });
  Check(fromText.failure == fromFile.failure && SameTable(fromText.object, fromFile.object),
        "loading from memory and from the file agree",
        "file: " + fromFile.failure + "\ntext: " + fromText.failure);

  const Table model = Model(text);
  const ZEL_CsvTableLoader& table = fromText.object;
  if (!model.failure.empty()) {
    Check(fromText.failure == "csv-file \"" + fileName + "\", " + model.failure &&
              table.GetNumColumns() == 0 && table.GetNumRows() == 0,
          "the loader fails as the model does, and is left empty",
          "expected: " + Escaped(model.failure) + "\ngot: " + Escaped(fromText.failure));
    return 0;
  }
  Check(fromText.failure.empty(), "the loader loads what the model reads",
        Escaped(fromText.failure));
  bool same = table.GetNumColumns() == model.titles.size() &&
              table.GetNumRows() == model.rows.size();
  for (std::size_t c = 0; same && c < model.titles.size(); ++c) {
    same = table.GetColTitle(c) == model.titles[c];
    for (std::size_t r = 0; same && r < model.rows.size(); ++r)
      same = table.GetCell(r, c) == model.rows[r][c];
  }
  Check(same, "the loader reads the model's titles and cells");
  CheckColumns(table, model, fileName);

  const Loaded again = Load([&](ZEL_CsvTableLoader& t) { t.LoadText(WrittenBack(table), "back"); });
  Check(again.failure.empty() && SameTable(again.object, table),
        "the table written back with quotes loads again into the same table",
        Escaped(again.failure));
  return 0;
}
