//===- ZEL_CsvTableWriter.cpp - Wide CSV tables over several files ----------===//
#include "TarnUtilities/text/ZEL_CsvTableWriter.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/text/CsvLineWriter.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/ZEL_CsvFileFailure.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>

namespace {

// The table writer reports through the failure's own header.
const char* const kHeader = "[%T|%n|%P|TarnUtilities|ZEL_Failure] ";

std::int32_t CheckedMaximum(std::int32_t maxColumnsPerFile, const std::u16string& fileName) {
  if (maxColumnsPerFile < 1)
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("The maximum number of columns per csv-file must be at least "
                                  "1, not %d (csv-file \"%s\")",
                                  maxColumnsPerFile,
                                  TarnStringUtil::wide_to_utf8(fileName).c_str()),
                      kHeader);
  return maxColumnsPerFile;
}

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

ZEL_CsvTableWriter::ZEL_CsvTableWriter(const std::u16string& fileName,
                                       std::int32_t maxColumnsPerFile)
    : fileName_(fileName), maxColumnsPerFile_(CheckedMaximum(maxColumnsPerFile, fileName)) {}

ZEL_CsvTableWriter::ZEL_CsvTableWriter(const std::string& fileName, std::int32_t maxColumnsPerFile)
    : ZEL_CsvTableWriter(TarnStringUtil::utf8_to_wide(fileName), maxColumnsPerFile) {}

void ZEL_CsvTableWriter::AppendCsv(CsvLineWriter& line) {
  line_ = &line;
  if (numColumns_ == 0)
    numColumns_ = static_cast<std::int32_t>(
        std::min<std::uint64_t>(line.GetNumTokens(), std::numeric_limits<std::int32_t>::max()));
}

std::u16string ZEL_CsvTableWriter::GetFileName(std::int32_t index) const {
  if (index == 0)
    return fileName_;
  const char16_t* name = fileName_.c_str();
  const std::size_t stem = static_cast<std::size_t>(TarnFileNameUtil::path_find_ext(name) - name);
  std::u16string numbered = fileName_.substr(0, stem);
  numbered += u'_';
  for (char c : std::to_string(index))
    numbered += static_cast<char16_t>(c);
  numbered += fileName_.substr(stem);
  return numbered;
}

void ZEL_CsvTableWriter::WriteToFile() {
  if (!line_)
    return;
  const std::int64_t maximum = maxColumnsPerFile_;
  const std::int32_t numFiles = static_cast<std::int32_t>(numColumns_ / maximum + 1);
  for (std::int32_t i = 0; i < numFiles; ++i) {
    const std::u16string name = GetFileName(i);
    const std::string utf8Name = TarnStringUtil::wide_to_utf8(name);
    const bool exists = TarnFileUtil::FileExists(name);
    ZEL_LOG_TRACE(kHeader,
                  ZEL_MESSAGE(exists ? "Appending data to csv-file %s" : "Creating csv-file %s",
                              utf8Name.c_str())
                      .c_str());
    std::unique_ptr<std::FILE, FileCloser> file(
        TarnFileUtil::wfopen(name, exists ? u"at+" : u"wt"));
    if (!file)
      throw ZEL_CsvFileFailure(
          ZEL_Code(), ZEL_MESSAGE("Could not open csv-file \"%s\" for writing!", utf8Name.c_str()),
          kHeader);

    // Tokens i*max .. i*max+max-1; the range may reach past the last token.
    const std::int64_t first = i * maximum;
    const std::int64_t last =
        std::min<std::int64_t>(first + maximum - 1, std::numeric_limits<int>::max());
    const std::string tokens =
        line_->GetLineTokens(static_cast<int>(first), static_cast<int>(last));
    const bool written =
        std::fwrite(tokens.data(), 1, tokens.size(), file.get()) == tokens.size() &&
        std::fputc('\n', file.get()) != EOF;
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed)
      throw ZEL_CsvFileFailure(ZEL_Code(),
                               ZEL_MESSAGE("Could not write to csv-file \"%s\"!", utf8Name.c_str()),
                               kHeader);
  }
}
