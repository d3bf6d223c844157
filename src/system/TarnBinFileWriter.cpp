//===- TarnBinFileWriter.cpp - Numbers to a binary file ---------------------===//
#include "TarnUtilities/system/TarnBinFileWriter.h"
#include "system/BufferedStream.h"

static_assert(sizeof(float) == 4 && sizeof(double) == 8,
              "the binary layout is 4-byte and 8-byte IEEE reals");

TarnBinFileWriter::~TarnBinFileWriter() { CloseFile(); }

bool TarnBinFileWriter::OpenFile(const std::u16string& name, std::string& error) {
  if (file_) {
    error = "A file is already open";
    return false;
  }
  file_ = TarnBufferedStream::Open(name, u"wb", error);
  return file_ != nullptr;
}

bool TarnBinFileWriter::WriteBytes(const void* bytes, std::size_t size, std::size_t count) {
  if (!file_ || (count > 0 && !bytes))
    return false;
  return count == 0 || std::fwrite(bytes, size, count, file_) == count;
}

bool TarnBinFileWriter::WriteInt(std::int32_t value) { return WriteBytes(&value, sizeof value, 1); }

bool TarnBinFileWriter::WriteIntArray(const std::int32_t* values, std::size_t count) {
  return WriteBytes(values, sizeof *values, count);
}

bool TarnBinFileWriter::WriteReal4Array(const float* values, std::size_t count) {
  return WriteBytes(values, sizeof *values, count);
}

bool TarnBinFileWriter::WriteReal8Array(const double* values, std::size_t count) {
  return WriteBytes(values, sizeof *values, count);
}

bool TarnBinFileWriter::CloseFile() {
  if (!file_)
    return false;
  const bool closed = std::fclose(file_) == 0;
  file_ = nullptr;
  return closed;
}
