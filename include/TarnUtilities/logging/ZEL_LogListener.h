//===- TarnUtilities/logging/ZEL_LogListener.h - Line callback -*- C++ -*-===//
//
// Hands every written log line, fully formatted and converted to UTF-16, to a
// function of the host application. Installed by ZEL_Logging::SetListener.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_LOGLISTENER_H
#define TARNUTILITIES_LOGGING_ZEL_LOGLISTENER_H

#include "TarnUtilities/Export.h"

#include <ace/Log_Msg_Callback.h>

class ACE_Log_Record;

class TARN_API ZEL_LogListener : public ACE_Log_Msg_Callback {
public:
  using Function = void (*)(const char16_t* line);

  explicit ZEL_LogListener(Function function) : function_(function) {}
  /// Called by ACE for every line written; passes the record's text on.
  void log(ACE_Log_Record& record) override;

private:
  Function function_;
};

#endif // TARNUTILITIES_LOGGING_ZEL_LOGLISTENER_H
