//===- tool/CsvTable.cpp - Numeric CSV tables for tarnutil -------------------===//
//
// Reads the file line by line through a stream, so a table larger than the
// memory for its text still loads; only the numbers are kept.
//
//===----------------------------------------------------------------------===//
#include "CsvTable.h"

#include "Arguments.h"
#include "Progress.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace tarnutil {
namespace {

/// s without blanks and tabs at both ends.
std::string Trimmed(const std::string& s, std::size_t begin, std::size_t end) {
  while (begin < end && (s[begin] == ' ' || s[begin] == '\t'))
    ++begin;
  while (end > begin && (s[end - 1] == ' ' || s[end - 1] == '\t'))
    --end;
  return s.substr(begin, end - begin);
}

/// The trimmed fields of one line.   " 1, 2 ,3" => ("1", "2", "3")
std::vector<std::string> SplitFields(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t comma = line.find(',', begin);
    const std::size_t end = comma == std::string::npos ? line.size() : comma;
    fields.push_back(Trimmed(line, begin, end));
    if (comma == std::string::npos)
      return fields;
    begin = comma + 1;
  }
}

std::string Where(const std::string& file, std::uint64_t line) {
  return file + ", line " + std::to_string(line);
}

std::string Unquoted(const std::string& title) {
  if (title.size() >= 2 && title.front() == '"' && title.back() == '"')
    return title.substr(1, title.size() - 2);
  return title;
}

} // namespace

std::size_t CsvTable::FindColumn(const std::string& wanted) const {
  for (std::size_t c = 0; c < titles.size(); ++c)
    if (titles[c] == wanted)
      return c;
  const bool digits = !wanted.empty() && wanted.find_first_not_of("0123456789") == std::string::npos;
  if (digits && wanted.size() < 10) { // below 10 digits the number fits any size_t
    const std::size_t number = std::stoul(wanted);
    if (number >= 1 && number <= numColumns)
      return number - 1;
  }
  throw InputError(fileName + " has no column '" + wanted + "' (it has " + std::to_string(numColumns) +
                   (numColumns == 1 ? " column)" : " columns)"));
}

CsvTable ReadCsvTable(const std::string& fileName) {
  std::error_code ignored;
  if (std::filesystem::is_directory(fileName, ignored))
    throw InputError("cannot open " + fileName + ": it is a directory");
  std::ifstream in(fileName, std::ios::binary);
  if (!in)
    throw InputError("cannot open " + fileName + ": " + std::strerror(errno));
  // A pipe has no size: it is read without progress.
  const std::uintmax_t size = std::filesystem::file_size(fileName, ignored);
  const std::uint64_t totalBytes = ignored ? 0 : size;

  CsvTable table;
  table.fileName = fileName;
  Progress progress("reading " + fileName, totalBytes);
  std::uint64_t bytesRead = 0;
  std::uint64_t lineNumber = 0;
  bool firstRow = true;
  std::string line;
  while (std::getline(in, line)) {
    ++lineNumber;
    bytesRead += line.size() + 1;
    progress.Update(bytesRead);
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    const std::string content = Trimmed(line, 0, line.size());
    if (content.empty() || content[0] == '#')
      continue;
    const std::vector<std::string> fields = SplitFields(content);
    if (firstRow) {
      firstRow = false;
      table.numColumns = fields.size();
      double ignored = 0.0;
      bool allNumbers = true;
      for (const std::string& field : fields)
        allNumbers = allNumbers && ParseNumber(field, ignored);
      if (!allNumbers) {
        for (const std::string& field : fields)
          table.titles.push_back(Unquoted(field));
        continue;
      }
    }
    if (fields.size() != table.numColumns)
      throw InputError(Where(fileName, lineNumber) + ": " + std::to_string(table.numColumns) +
                       " fields expected, " + std::to_string(fields.size()) + " found");
    for (std::size_t c = 0; c < fields.size(); ++c) {
      double value = 0.0;
      if (!ParseNumber(fields[c], value) || !std::isfinite(value))
        throw InputError(Where(fileName, lineNumber) + ", column " + std::to_string(c + 1) + ": '" +
                         fields[c] + "' is not a finite number");
      table.values.push_back(value);
    }
    table.lineNumbers.push_back(lineNumber);
  }
  if (in.bad())
    throw InputError("cannot read " + fileName + ": " + std::strerror(errno));
  return table;
}

} // namespace tarnutil
