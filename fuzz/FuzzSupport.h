//===- fuzz/FuzzSupport.h - Shared pieces of the fuzz targets --*- C++ -*-===//
//
// What several fuzz targets need: a log sink that takes every line of every
// level without printing it (so the formatting of trace and debug lines is
// exercised too, at no I/O cost), a scratch directory of this process that
// files are written into, splitting one input into several virtual files,
// and a check that stops the run with a readable report.
//
// A failed check prints what differed and aborts, which libFuzzer records as
// a crash together with the input that caused it.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_FUZZ_FUZZSUPPORT_H
#define TARNUTILITIES_FUZZ_FUZZSUPPORT_H

#include "TarnUtilities/logging/ZEL_Failure.h"

#include <ace/Log_Msg.h>
#include <ace/Log_Msg_Callback.h>
#include <ace/Log_Record.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace tarn_fuzz {

/// What a reader made of an input: the object, and the failure message it
/// threw ("" when loading succeeded).
template <typename Object> struct Loaded {
  Object object;
  std::string failure;
};

/// Runs `load` on a fresh object and keeps the ZEL_Failure it throws.
template <typename Object, typename LoadFunction> Loaded<Object> Load(LoadFunction load) {
  Loaded<Object> loaded;
  try {
    load(loaded.object);
  } catch (const ZEL_Failure& e) {
    loaded.failure = e.GetMessage();
  }
  return loaded;
}

/// Stops the run when `ok` is false, printing `what` and the details.
inline void Check(bool ok, const char* what, const std::string& details = std::string()) {
  if (ok)
    return;
  std::fprintf(stderr, "\n*** fuzz check failed: %s\n%s\n", what, details.c_str());
  std::abort();
}

/// Bytes as a C-escaped text, for reports: "a\n\x01".
inline std::string Escaped(std::string_view bytes) {
  std::string out;
  for (unsigned char c : bytes) {
    if (c >= 0x20 && c < 0x7F && c != '\\' && c != '"') {
      out.push_back(static_cast<char>(c));
    } else {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02X", c);
      out += hex;
    }
  }
  return out;
}

/// Takes every log line of every level on the installing thread and drops
/// it after checking that ACE handed over a terminated record.
class SilentLog : public ACE_Log_Msg_Callback {
public:
  /// Installs the sink once for the process; later calls do nothing.
  static void Install() {
    static SilentLog sink;
    static bool installed = false;
    if (installed)
      return;
    installed = true;
    ACE_Log_Msg* msg = ACE_Log_Msg::instance();
    msg->msg_callback(&sink);
    msg->priority_mask(LM_SHUTDOWN | LM_TRACE | LM_DEBUG | LM_INFO | LM_NOTICE | LM_WARNING |
                           LM_STARTUP | LM_ERROR | LM_CRITICAL | LM_ALERT | LM_EMERGENCY,
                       ACE_Log_Msg::PROCESS);
    msg->clr_flags(ACE_Log_Msg::STDERR | ACE_Log_Msg::OSTREAM);
    msg->set_flags(ACE_Log_Msg::MSG_CALLBACK);
  }

  void log(ACE_Log_Record& record) override {
    Check(std::strlen(record.msg_data()) <= record.msg_data_len(), "log record is terminated");
  }
};

/// A fresh directory of this process under $TMPDIR (or /tmp), removed when
/// the process ends normally.
class ScratchDir {
public:
  /// The directory of this process, created on first use.
  static const std::string& Path() {
    static ScratchDir dir;
    return dir.path_;
  }

  /// Writes `bytes` to the file `name` inside the directory.
  static void Write(const std::string& name, std::string_view bytes) {
    std::ofstream out(Path() + "/" + name, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    Check(static_cast<bool>(out), "scratch file written", name);
  }

  /// Removes the file `name` inside the directory, if it is there.
  static void Remove(const std::string& name) { ::unlink((Path() + "/" + name).c_str()); }

private:
  ScratchDir() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/tarn_fuzz_XXXXXX";
    Check(::mkdtemp(pattern.data()) != nullptr, "scratch directory created", pattern);
    path_ = pattern;
  }
  ~ScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string path_;
};

/// Splits `bytes` at every occurrence of `separator` into at most `maxParts`
/// parts (the last part keeps any further separators).
///   ("a@@b@@c", "@@", 2) => {"a", "b@@c"}
inline std::vector<std::string_view> SplitInput(std::string_view bytes, std::string_view separator,
                                                std::size_t maxParts) {
  std::vector<std::string_view> parts;
  while (parts.size() + 1 < maxParts) {
    const std::size_t at = bytes.find(separator);
    if (at == std::string_view::npos)
      break;
    parts.push_back(bytes.substr(0, at));
    bytes.remove_prefix(at + separator.size());
  }
  parts.push_back(bytes);
  return parts;
}

} // namespace tarn_fuzz

#endif // TARNUTILITIES_FUZZ_FUZZSUPPORT_H
