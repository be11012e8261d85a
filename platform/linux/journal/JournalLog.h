#pragma once

#include "platform/LogSink.h"

namespace fyn::productionrules {

/**
 * The journal of systemd, which adds time, process and unit. A line's message is `TAG: text`; the tag alone
 * is in the field PRB_TAG (`journalctl PRB_TAG=BaseLayout`).
 */
class JournalLog final : public LogSink {
 public:
  void write(LogPriority priority, const char* tag, const char* text) override;
};

}  // namespace fyn::productionrules
