//===- LogLine.cpp - One log line through ACE -------------------------------===//
//
// ACE formats a record into a buffer of ACE_MAXLOGMSGLEN bytes and cuts what
// does not fit. A line that fits is one record, as ACE intends. A longer line
// is written as several records that join without a seam: the first carries
// the prefix and the expanded header, the next ones plain pieces of the
// message, the last one the line break. ACE's own output lock, which it
// exports for exactly this, is held across all of them, so no other thread's
// record lands in between on standard output, the log file or standard
// error. ACE hands each record to the callback before it takes that lock, so
// for the pieces the thread's callback is replaced by a collector, and the
// listener then receives the joined line as one record.
//
//===----------------------------------------------------------------------===//
#include "logging/LogLine.h"
#include "logging/LogDestinations.h"

#include <ace/Log_Msg.h>
#include <ace/Log_Msg_Callback.h>
#include <ace/Log_Record.h>

#include <cstring>
#include <string>

namespace {

// The format of one line is built in a buffer of 512 bytes.
constexpr std::size_t kFormatBytes = 512;

// Room for the expansion of the header's directives in a one-record line:
// the time (15 characters) and the process id (at most 10); the program name
// is counted on its own.
constexpr std::size_t kExpansionMargin = 64;
constexpr std::size_t kMinChunk = 256;

// The message bytes of one record of a long line. Such a record has no
// directive but "%s", so it may come close to ACE's buffer; the margin keeps
// room for the final line break and the terminator.
constexpr std::size_t kPieceBytes = ACE_MAXLOGMSGLEN - 64;

// Appends as much of text as fits, keeping room for `reserve` more bytes and
// the terminator. Returns the new length.
std::size_t AppendBounded(char* buffer, std::size_t length, const char* text, std::size_t reserve) {
  const std::size_t room = kFormatBytes - 1 - reserve;
  std::size_t n = std::strlen(text);
  if (length >= room)
    return length;
  if (n > room - length)
    n = room - length;
  std::memcpy(buffer + length, text, n);
  return length + n;
}

// Computes the length of the next piece of a long message: at most limit
// bytes, cut before a UTF-8 continuation byte so that every record holds
// whole characters.
std::size_t NextPiece(const char* text, std::size_t length, std::size_t limit) {
  if (length <= limit)
    return length;
  std::size_t cut = limit;
  while (cut > 1 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
    --cut;
  return cut;
}

// Joins the texts of the records of one long line, standing in for the
// thread's callback while they are written.
class LineCollector : public ACE_Log_Msg_Callback {
public:
  explicit LineCollector(std::size_t expectedLength) { text_.reserve(expectedLength); }

  void log(ACE_Log_Record& record) override {
    if (text_.empty()) {
      time_ = record.time_stamp();
      pid_ = record.pid();
    }
    text_ += record.msg_data();
  }

  /// Hands the joined line to `callback` as one record (nothing if ACE did
  /// not call back, because callbacks are off).
  void Deliver(ACE_Log_Priority priority, ACE_Log_Msg_Callback* callback) const {
    if (callback == nullptr || text_.empty())
      return;
    ACE_Log_Record record(priority, time_, pid_);
    if (record.msg_data(text_.c_str()) == 0)
      callback->log(record);
  }

private:
  std::string text_;
  ACE_Time_Value time_;
  long pid_ = 0;
};

// Holds ACE's output lock and keeps the collector in place of the thread's
// callback for the records of one long line.
class LongLineScope {
public:
  LongLineScope(ACE_Log_Msg* msg, ACE_Log_Msg_Callback* collector) : msg_(msg) {
    msg_->acquire();
    callback_ = msg_->msg_callback(collector);
  }
  ~LongLineScope() {
    msg_->msg_callback(callback_);
    msg_->release();
  }
  LongLineScope(const LongLineScope&) = delete;
  LongLineScope& operator=(const LongLineScope&) = delete;

  /// The thread's own callback.
  ACE_Log_Msg_Callback* callback() const { return callback_; }

private:
  ACE_Log_Msg* msg_;
  ACE_Log_Msg_Callback* callback_;
};

// Writes format (prefix, header and "%s\n", of formatLength bytes before the
// "%s\n") with a message too long for one record.
void WriteLongLine(ACE_Log_Msg* msg, ACE_Log_Priority priority, const char* format,
                   std::size_t formatLength, const char* file, int line, int lastError,
                   const char* text, std::size_t remaining) {
  LineCollector collector(formatLength + kExpansionMargin + remaining + 1);
  ACE_Log_Msg_Callback* callback;
  {
    LongLineScope scope(msg, &collector);
    callback = scope.callback();
    // The prefix and the expanded header, cut by ACE exactly as in a short line.
    const std::string head = std::string(format, formatLength) + "%s";
    msg->log(priority, head.c_str(), "");
    std::string piece;
    while (remaining > 0) {
      const std::size_t n = NextPiece(text, remaining, kPieceBytes);
      piece.assign(text, n);
      text += n;
      remaining -= n;
      msg->conditional_set(file, line, -1, lastError);
      msg->log(priority, remaining == 0 ? "%s\n" : "%s", piece.c_str());
    }
  }
  // Outside the lock, as ACE calls back, so that a listener may log.
  collector.Deliver(priority, callback);
}

} // namespace

namespace ZEL_detail {

void WriteLogLine(ACE_Log_Priority priority, const char* prefix, const char* file, int line,
                  const char* header, const char* message) {
  ACE_Log_Msg* msg = ACE_Log_Msg::instance();
  // A suppressed line costs only this test.
  if (!msg->log_priority_enabled(priority))
    return;
  const int lastError = ACE_Log_Msg::last_error_adapter();
  msg = ThreadLogMsg();
  msg->conditional_set(file, line, -1, lastError);

  // prefix + header + "%s\n"; a too-long header is cut, but room for the
  // message directive is always kept so that the message is never lost.
  char format[kFormatBytes];
  std::size_t length = AppendBounded(format, 0, prefix, 3);
  length = AppendBounded(format, length, header ? header : "", 3);
  // A cut may leave a lone '%' that would swallow the directive after it.
  std::size_t percents = 0;
  while (percents < length && format[length - 1 - percents] == '%')
    ++percents;
  if (percents % 2 == 1)
    --length;
  std::memcpy(format + length, "%s\n", 4);

  const char* text = message ? message : "";
  const std::size_t textLength = std::strlen(text);
  const char* programName = ACE_Log_Msg::program_name();
  const std::size_t overhead =
      length + kExpansionMargin + (programName ? std::strlen(programName) : 0);
  const std::size_t limit =
      ACE_MAXLOGMSGLEN > overhead + kMinChunk ? ACE_MAXLOGMSGLEN - overhead : kMinChunk;
  if (textLength <= limit)
    msg->log(priority, format, text);
  else
    WriteLongLine(msg, priority, format, length, file, line, lastError, text, textLength);
}

} // namespace ZEL_detail
