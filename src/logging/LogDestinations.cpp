//===- LogDestinations.cpp - Log destinations shared by all threads ---------===//
#include "logging/LogDestinations.h"

#include <ace/Log_Msg.h>

#include <atomic>
#include <cstdint>
#include <mutex>

namespace ZEL_detail {
namespace {
std::mutex g_mutex;
std::ostream* g_stream = nullptr;
ACE_Log_Msg_Callback* g_callback = nullptr;
// Bumped on every publication; 0 means "nothing published yet", in which
// case ACE's own defaults stay in force.
std::atomic<std::uint64_t> g_generation{0};
thread_local std::uint64_t t_generationSeen = 0;

void Apply(ACE_Log_Msg* msg, std::uint64_t generation) {
  std::lock_guard<std::mutex> lock(g_mutex);
  msg->msg_ostream(g_stream, false); // the logger owns the stream, not ACE
  msg->msg_callback(g_callback);
  t_generationSeen = generation;
}
} // namespace

void PublishLogDestinations(std::ostream* stream, ACE_Log_Msg_Callback* callback) {
  std::uint64_t generation;
  {
    std::lock_guard<std::mutex> lock(g_mutex);
    g_stream = stream;
    g_callback = callback;
    generation = g_generation.fetch_add(1, std::memory_order_acq_rel) + 1;
  }
  Apply(ACE_Log_Msg::instance(), generation);
}

ACE_Log_Msg* ThreadLogMsg() {
  ACE_Log_Msg* msg = ACE_Log_Msg::instance();
  const std::uint64_t generation = g_generation.load(std::memory_order_acquire);
  if (generation != t_generationSeen)
    Apply(msg, generation);
  return msg;
}

} // namespace ZEL_detail
