//===- TarnCsvFileWriter.cpp - CSV lines to a file --------------------------===//
#include "TarnUtilities/text/TarnCsvFileWriter.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "system/BufferedStream.h"

#include <cerrno>
#include <cstring>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|TarnCsvFileWriter] ";

} // namespace

TarnCsvFileWriter::TarnCsvFileWriter(std::size_t capacity) : line_(capacity, ", ") {}

TarnCsvFileWriter::~TarnCsvFileWriter() {
  CloseFile();
}

bool TarnCsvFileWriter::OpenFile(const char16_t* name, std::string& error, FileOpenMode mode) {
  if (file_) {
    error = "A file is already open";
    return false;
  }
  line_.Clear();
  if (!name) {
    error = std::strerror(EINVAL);
    return false;
  }
  file_ = TarnBufferedStream::Open(name, mode == FILE_APPEND ? u"at" : u"wt", error);
  return file_ != nullptr;
}

bool TarnCsvFileWriter::OpenFile(const char16_t* name, FileOpenMode mode) {
  std::string ignored;
  return OpenFile(name, ignored, mode);
}

bool TarnCsvFileWriter::FlushCsvLine() {
  if (!file_)
    return false;
  const std::size_t length = line_.GetCurrentLen();
  const bool lineWritten = std::fwrite(line_.GetLine(), 1, length, file_) == length;
  const bool endWritten = std::fputc('\n', file_) != EOF;
  line_.Clear();
  return lineWritten && endWritten;
}

bool TarnCsvFileWriter::WriteLine(const char* text) {
  if (!file_)
    return false;
  const bool textWritten = !text || std::fputs(text, file_) != EOF;
  const bool endWritten = std::fputc('\n', file_) != EOF;
  return textWritten && endWritten;
}

void TarnCsvFileWriter::CloseFile() {
  if (file_) {
    if (std::fclose(file_) != 0)
      ZEL_LOG_WARNING(kHeader,
                      ZEL_MESSAGE("Closing the csv-file failed: %s", std::strerror(errno)).c_str());
    file_ = nullptr;
  }
  line_.Clear();
}
