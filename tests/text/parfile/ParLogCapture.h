//===- ParLogCapture.h - Captures the log lines of the parameter-file readers -*- C++ -*-===//
//
// Installs an ACE callback on the calling thread for its lifetime, enables
// every priority and keeps each written line split into its level, the
// class named in its log header and its message.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TESTS_TEXT_PARLOGCAPTURE_H
#define TARNUTILITIES_TESTS_TEXT_PARLOGCAPTURE_H

#include <ace/Log_Msg.h>
#include <ace/Log_Msg_Callback.h>
#include <ace/Log_Record.h>

#include <string>
#include <vector>

struct CapturedLine {
  std::string level;   // "WARNING", "DEBUG", "TRACE", ...
  std::string header;  // the header with its time, program and process fields cut off
  std::string message; // without the line end
};

class ParLogCapture : public ACE_Log_Msg_Callback {
public:
  ParLogCapture() {
    ACE_Log_Msg* msg = ACE_Log_Msg::instance();
    previousCallback_ = msg->msg_callback(this);
    previousMask_ = msg->priority_mask(ACE_Log_Msg::PROCESS);
    previousFlags_ = msg->flags();
    msg->priority_mask(LM_SHUTDOWN | LM_TRACE | LM_DEBUG | LM_INFO | LM_NOTICE | LM_WARNING |
                           LM_STARTUP | LM_ERROR | LM_CRITICAL | LM_ALERT | LM_EMERGENCY,
                       ACE_Log_Msg::PROCESS);
    msg->clr_flags(ACE_Log_Msg::STDERR);
    msg->set_flags(ACE_Log_Msg::MSG_CALLBACK);
  }
  ~ParLogCapture() override {
    ACE_Log_Msg* msg = ACE_Log_Msg::instance();
    msg->clr_flags(ACE_Log_Msg::MSG_CALLBACK);
    msg->set_flags(previousFlags_);
    msg->priority_mask(previousMask_, ACE_Log_Msg::PROCESS);
    msg->msg_callback(previousCallback_);
  }
  ParLogCapture(const ParLogCapture&) = delete;
  ParLogCapture& operator=(const ParLogCapture&) = delete;


  void log(ACE_Log_Record& record) override {
    const std::string text = record.msg_data();
    CapturedLine line;
    const std::size_t close = text.find(')');
    line.level = text.substr(1, close - 1);
    line.level.erase(line.level.find_last_not_of(' ') + 1);
    const std::size_t headerEnd = text.find("] ");
    // "[time|program|pid|Library|Class] " => "Library|Class"
    const std::string header = text.substr(close + 2, headerEnd - close - 2);
    std::size_t bar = header.size();
    for (int fields = 0; fields < 2 && bar != std::string::npos; ++fields)
      bar = header.rfind('|', bar - 1);
    line.header = header.substr(bar + 1);
    line.message = text.substr(headerEnd + 2);
    if (!line.message.empty() && line.message.back() == '\n')
      line.message.pop_back();
    lines.push_back(line);
  }

  /// The messages written at one level ("WARNING", "TRACE", ...).
  std::vector<std::string> Messages(const std::string& level) const {
    std::vector<std::string> found;
    for (const CapturedLine& line : lines)
      if (line.level == level)
        found.push_back(line.message);
    return found;
  }

  std::vector<CapturedLine> lines;

private:
  ACE_Log_Msg_Callback* previousCallback_ = nullptr;
  u_long previousMask_ = 0;
  unsigned long previousFlags_ = 0;
};

#endif // TARNUTILITIES_TESTS_TEXT_PARLOGCAPTURE_H
