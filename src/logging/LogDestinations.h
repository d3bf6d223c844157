//===- LogDestinations.h - Log destinations shared by all threads -*- C++ -*-===//
//
// ACE keeps the output stream and the callback object in a per-thread
// ACE_Log_Msg instance, while its flags and the process priority mask are
// process-wide. A line logged from a thread that never saw the configuration
// (a std::thread, say) would be silently lost. The logger therefore publishes
// the configured stream and callback here, and every log call hands them to
// its thread's instance when the published set has changed since that thread
// last looked.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_LOGGING_LOGDESTINATIONS_H
#define TARNUTILITIES_SRC_LOGGING_LOGDESTINATIONS_H

#include <ostream>

class ACE_Log_Msg;
class ACE_Log_Msg_Callback;

namespace ZEL_detail {

/// Publishes the stream and callback that every thread's ACE instance is to
/// use (either may be null) and applies them to the calling thread at once.
/// The caller keeps both alive until it publishes others.
void PublishLogDestinations(std::ostream* stream, ACE_Log_Msg_Callback* callback);

/// Returns the calling thread's ACE instance with the published destinations.
ACE_Log_Msg* ThreadLogMsg();

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_LOGGING_LOGDESTINATIONS_H
