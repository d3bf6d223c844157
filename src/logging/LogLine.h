//===- logging/LogLine.h - One log line through ACE -------------*- C++ -*-===//
//
// Writes one line of the log: a level prefix, a class header whose ACE
// directives (%T, %n, %P, ...) ACE expands, the message as it stands, and a
// line break. The level functions and the logger's own failure reports share
// it, so that a line of any length reaches every destination the same way.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_LOGGING_LOGLINE_H
#define TARNUTILITIES_SRC_LOGGING_LOGLINE_H

#include <ace/Log_Priority.h>

namespace ZEL_detail {

/// Writes prefix + header + message + "\n" at `priority` to every configured
/// destination (standard output or the log file, standard error when echoed,
/// the listener). However long the message, each destination receives the
/// line as one piece of text that no other thread's line interrupts.
/// `file` and `line` are the caller's source position; a null header or
/// message counts as empty. A header too long for the 512-byte format is cut.
void WriteLogLine(ACE_Log_Priority priority, const char* prefix, const char* file, int line,
                  const char* header, const char* message);

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_LOGGING_LOGLINE_H
