//===- TarnParFileParser.cpp - The word reader -------------------------------===//
#include "TarnUtilities/text/TarnParFileParser.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/system/TextLinesParser.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "text/parfile/ParFileSupport.h"
#include "text/strings/Utf8Bom.h"

#include <cstring>
#include <sys/stat.h>

using namespace TarnParDetail;

// The files being read, outermost first, identified by device and inode so
// that a cycle is found whatever names lead to the same file.
struct TarnParFileParser::IncludeChain {
  struct Entry {
    dev_t device;
    ino_t inode;
    std::string name;
  };
  std::vector<Entry> files;
  int includedFilesRead = 0;
};

namespace {

// Lines are quoted in messages up to this many bytes, so that the file name
// after the line always fits into the bounded message.
constexpr int kQuotedLineBytes = 512;

std::string QuotedLine(const char* line) {
  if (std::strlen(line) <= static_cast<std::size_t>(kQuotedLineBytes))
    return line;
  return std::string(line, kQuotedLineBytes) + "...";
}

[[noreturn]] void ThrowForLine(const char* format, const char* line, const std::string& file) {
  throw ZEL_Failure(ZEL_Code(), ZEL_MESSAGE(format, QuotedLine(line).c_str(), file.c_str()),
                    kParserHeader);
}

bool IsWordCharacter(char c) { return IsLetter(c) || IsDigit(c) || c == '_'; }

// name itself, or name with ".par" when it has no extension and no file of
// that name exists.
std::u16string WithDefaultExtension(std::u16string name) {
  if (!TarnFileNameUtil::path_has_ext(name) && !TarnFileUtil::FileExists(name))
    TarnFileNameUtil::path_set_ext(name, u".par");
  return name;
}

bool IsReadable(const std::u16string& name) {
  return TarnFileUtil::FileExists(WithDefaultExtension(name));
}

// "name", 'name' => name; anything else is kept as it is.
std::string Unquoted(const std::string& name) {
  if (name.size() >= 2 && (name.front() == '"' || name.front() == '\'') &&
      name.back() == name.front())
    return name.substr(1, name.size() - 2);
  return name;
}

// The directory part of a file name with its trailing separator ("" for a
// bare name).
std::u16string DirectoryOf(const std::u16string& fileName) {
  const std::size_t separator = fileName.find_last_of(u"/\\");
  return separator == std::u16string::npos ? std::u16string() : fileName.substr(0, separator + 1);
}

// An include file is looked for as named (relative to the working
// directory), then beside the including file, then under each include
// directory in list order.
bool ResolveInclude(const std::u16string& name, const std::u16string& includingFile,
                    const std::vector<std::u16string>& includeDirectories, std::u16string& found) {
  if (IsReadable(name)) {
    found = name;
    return true;
  }
  if (name.empty() || name.front() == u'/' || name.front() == u'\\')
    return false;
  const std::u16string directory = DirectoryOf(includingFile);
  if (!directory.empty() && IsReadable(directory + name)) {
    found = directory + name;
    return true;
  }
  for (const std::u16string& includeDirectory : includeDirectories) {
    std::u16string candidate;
    TarnFileNameUtil::concat_path(includeDirectory, name, candidate);
    if (IsReadable(candidate)) {
      found = candidate;
      return true;
    }
  }
  return false;
}

} // namespace

TarnParFileParser::BlockList TarnParFileParser::ParseParameterFile(
    const std::u16string& fileName, const std::string& commandName,
    const std::vector<std::u16string>& includeDirectories, int includeLevel) {
  IncludeChain chain;
  BlockList blocks;
  ParseInto(fileName, ToLowerCopy(commandName), includeDirectories, includeLevel, chain, blocks);
  return blocks;
}

void TarnParFileParser::ParseInto(std::u16string fileName, const std::string& lowerCommand,
                                  const std::vector<std::u16string>& includeDirectories,
                                  int includeLevel, IncludeChain& chain, BlockList& blocks) {
  fileName = WithDefaultExtension(std::move(fileName));
  const std::string name = TarnStringUtil::wide_to_utf8(fileName);
  if (!TarnFileUtil::FileExists(fileName))
    throw ZEL_Failure(ZEL_Code(), ZEL_MESSAGE("Parameter file \"%s\" does not exist", name.c_str()),
                      kParserHeader);
  if (DebugEnabled())
    ZEL_LogMacros::debug(__FILE__, __LINE__, kParserHeader,
                         (includeLevel == 0
                              ? ZEL_MESSAGE("Parsing parameter file \"%s\".", name.c_str())
                              : ZEL_MESSAGE("Parsing parameter file \"%s\", include level %d.",
                                            name.c_str(), includeLevel))
                             .c_str());

  struct stat status {};
  const bool identified = ::stat(name.c_str(), &status) == 0;
  if (identified) {
    for (std::size_t i = 0; i < chain.files.size(); ++i) {
      if (chain.files[i].device != status.st_dev || chain.files[i].inode != status.st_ino)
        continue;
      std::string cycle;
      for (std::size_t j = i; j < chain.files.size(); ++j)
        cycle += "\"" + chain.files[j].name + "\" -> ";
      cycle += "\"" + name + "\"";
      throw ZEL_Failure(ZEL_Code(),
                        ZEL_MESSAGE("Parameter file \"%s\" includes itself: %s",
                                    chain.files[i].name.c_str(), cycle.c_str()),
                        kParserHeader);
    }
  }
  if (chain.files.size() > static_cast<std::size_t>(kMaxIncludeDepth))
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("Parameter file \"%s\" is included more than %d levels deep.",
                                  name.c_str(), kMaxIncludeDepth),
                      kParserHeader);

  if (!chain.files.empty() && ++chain.includedFilesRead > kMaxIncludedFiles)
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("Parameter file \"%s\" is not read: more than %d include files "
                                  "are read for \"%s\".",
                                  name.c_str(), kMaxIncludedFiles,
                                  chain.files.front().name.c_str()),
                      kParserHeader);

  // A directory "exists" but is no file to read.
  TextLinesParser text;
  std::string errorText;
  if ((identified && S_ISDIR(status.st_mode)) ||
      !text.LoadTextFromFile(fileName.c_str(), errorText))
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("Error opening parameter file \"%s\" for reading.", name.c_str()),
                      kParserHeader);
  chain.files.push_back(
      {identified ? status.st_dev : dev_t(), identified ? status.st_ino : ino_t(), name});

  const std::size_t lineCount = text.GetNumLines();
  for (std::size_t i = 0; i < lineCount; ++i) {
    const char* line = i == 0 ? tarn_detail::SkipUtf8Bom(text.GetLine(0)) : text.GetLine(i);
    const char* cursor = line;
    const std::string include = GetIncludeFileName(cursor);
    if (!include.empty()) {
      std::u16string found;
      if (ResolveInclude(TarnStringUtil::utf8_to_wide(Unquoted(include)), fileName,
                         includeDirectories, found))
        ParseInto(found, lowerCommand, includeDirectories, includeLevel + 1, chain, blocks);
      else
        ZEL_LogMacros::warning(
            __FILE__, __LINE__, kParserHeader,
            ZEL_MESSAGE("Include file \"%s\" not found", include.c_str()).c_str());
      continue;
    }
    cursor = line;
    const std::string word = GetNextWordInLowerCase(cursor);
    if (word == "include")
      ZEL_LogMacros::warning(
          __FILE__, __LINE__, kParserHeader,
          ZEL_MESSAGE("'include' command syntax error (%s)", QuotedLine(line).c_str()).c_str());
    else if (!lowerCommand.empty() && word == lowerCommand)
      blocks.push_back(ReadBlock(text, i, name));
  }
  chain.files.pop_back();

  if (DebugEnabled())
    ZEL_LogMacros::debug(
        __FILE__, __LINE__, kParserHeader,
        (includeLevel == 0
             ? ZEL_MESSAGE("Parameter file \"%s\" loaded.", name.c_str())
             : ZEL_MESSAGE("Included parameter file \"%s\" (include level %d) loaded.",
                           name.c_str(), includeLevel))
            .c_str());
}

// Reads the lines after the command line at index up to the block's END_
// line and leaves index there.
TarnParFileParser::Block TarnParFileParser::ReadBlock(const TextLinesParser& text,
                                                      std::size_t& index,
                                                      const std::string& fileName) {
  Block block;
  const std::size_t lineCount = text.GetNumLines();
  for (++index; index < lineCount; ++index) {
    const char* line = text.GetLine(index);
    const char* cursor = line;
    while (IsBlank(*cursor))
      ++cursor;
    // Blank lines and comment lines.
    if (*cursor == '\0' || *cursor == '!' || *cursor == '#' || *cursor == '$' ||
        (cursor[0] == '*' && cursor[1] == '*'))
      continue;
    std::string key = GetNextWordInLowerCase(cursor);
    if (key.compare(0, 4, "end_") == 0)
      return block;
    while (IsBlank(*cursor))
      ++cursor;
    // "com ..." and "c ..." are comment lines, unless the word is a key.
    if ((key == "com" || key == "c") && *cursor != '=')
      continue;
    if (*cursor != '=')
      ThrowForLine("'=' expected in line\n    %s\n of the parameter file \"%s\".", line, fileName);
    // "= value" keeps its value under an empty key.
    if (key.empty())
      ZEL_LogMacros::warning(
          __FILE__, __LINE__, kParserHeader,
          ZEL_MESSAGE("Key missing before '=' in line\n    %s\n of the parameter file \"%s\". "
                      "The value is stored under an empty key.",
                      QuotedLine(line).c_str(), fileName.c_str())
              .c_str());
    ++cursor;
    while (IsBlank(*cursor))
      ++cursor;
    const bool quoted = *cursor == '"' || *cursor == '\'';
    std::string value = GetNextStringValue(cursor);
    if (quoted && value.empty())
      ZEL_LogMacros::warning(
          __FILE__, __LINE__, kParserHeader,
          ZEL_MESSAGE("Closing quote missing in line\n    %s\n of the parameter file \"%s\". "
                      "The value is empty.",
                      QuotedLine(line).c_str(), fileName.c_str())
              .c_str());
    if (*cursor != '\0' && *cursor != '!')
      ThrowForLine("Unexpected symbols found in line\n    %s\n of the parameter file \"%s\".", line,
                   fileName);
    block.emplace_back(std::move(key), std::move(value));
  }
  throw ZEL_Failure(ZEL_Code(),
                    ZEL_MESSAGE("End of file reached before END_ command is found in file \"%s\".",
                                fileName.c_str()),
                    kParserHeader);
}

std::string TarnParFileParser::GetNextWordInLowerCase(const char*& cursor) {
  while (IsBlank(*cursor))
    ++cursor;
  const char* start = cursor;
  while (IsWordCharacter(*cursor))
    ++cursor;
  std::string word(start, cursor);
  for (char& c : word)
    c = ToLowerAscii(c);
  return word;
}

std::string TarnParFileParser::GetIncludeFileName(const char*& cursor) {
  if (GetNextWordInLowerCase(cursor) != "include") {
    cursor += std::strlen(cursor);
    return std::string();
  }
  while (*cursor == ',' || IsBlank(*cursor))
    ++cursor;
  return GetNextStringValue(cursor);
}

std::string TarnParFileParser::GetNextStringValue(const char*& cursor) {
  while (IsBlank(*cursor))
    ++cursor;
  if (*cursor == '"' || *cursor == '\'') {
    const char* close = std::strchr(cursor + 1, *cursor);
    if (close == nullptr) {
      cursor += std::strlen(cursor);
      return std::string();
    }
    std::string value(cursor, close + 1);
    cursor = close + 1;
    while (IsBlank(*cursor))
      ++cursor;
    return value;
  }
  // Words up to the end of the line or a "!", joined without their blanks.
  std::string value;
  for (; *cursor != '\0' && *cursor != '!'; ++cursor)
    if (!IsBlank(*cursor))
      value.push_back(*cursor);
  return value;
}
