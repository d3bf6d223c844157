//===- system/BufferedStream.h - Writing streams with a large buffer -*- C++ -*-===//
//
// The file writers (CSV, binary) open their file the same way: through
// TarnFileUtil::wfopen, with a 64 KiB stream buffer so that many small
// writes cost few system calls, and with the system's text on failure.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_SYSTEM_BUFFEREDSTREAM_H
#define TARNUTILITIES_SRC_SYSTEM_BUFFEREDSTREAM_H

#include <cstdio>
#include <string>

namespace TarnBufferedStream {

/// Opens `name` with the fopen `mode` ("wb", "at", ...) and a 64 KiB buffer.
/// On success clears `error`; on failure returns null and sets `error` to
/// the system's text (EIO's when the system gave no reason).
std::FILE* Open(const std::u16string& name, const char16_t* mode, std::string& error);

} // namespace TarnBufferedStream

#endif // TARNUTILITIES_SRC_SYSTEM_BUFFEREDSTREAM_H
