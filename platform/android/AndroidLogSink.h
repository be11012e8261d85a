#pragma once

#include "platform/LogSink.h"

namespace fyn::productionrules {

/** The log of an Android device, as `logcat` shows it. */
class AndroidLogSink final : public LogSink {
 public:
  void write(LogPriority priority, const char* tag, const char* text) override;
};

}  // namespace fyn::productionrules
