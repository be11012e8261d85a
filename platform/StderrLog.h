#pragma once

#include <cstdint>
#include <string>

#include "platform/LogSink.h"
#include "platform/Mutex.h"

namespace fyn::productionrules {

/** A readable log on standard error: `2026-01-31 12:34:56.789 I BaseLayout: text`, local time. */
class StderrLog final : public LogSink {
 public:
  void write(LogPriority priority, const char* tag, const char* text) override;

 private:
  Mutex mMutex;
};

/** `2026-01-31 12:34:56.789`, local time. `wallMs` are milliseconds since 1970. */
std::string localTimeText(std::int64_t wallMs);

/** E, W, I or D. */
char logPriorityLetter(LogPriority priority);

}  // namespace fyn::productionrules
