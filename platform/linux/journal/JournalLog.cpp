// The macros of the header would add this file's name and line to every record.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include "platform/linux/journal/JournalLog.h"

#include <systemd/sd-journal.h>

#include <memory>

#include "platform/Backends.h"
#include "platform/LogText.h"

namespace fyn::productionrules {

namespace {

int syslogLevel(LogPriority priority) {
  switch (priority) {
    case LogPriority::error:
      return 3;
    case LogPriority::warning:
      return 4;
    case LogPriority::info:
      return 6;
    case LogPriority::debug:
      break;
  }
  return 7;
}

}  // namespace

void JournalLog::write(LogPriority priority, const char* tag, const char* text) {
  sd_journal_send("PRIORITY=%d", syslogLevel(priority), "PRB_TAG=%s", tag, "MESSAGE=%s: %s", tag,
                  cleanLogText(text).c_str(), nullptr);
}

const LogBackend::Maker kMakeJournalLog = [](const PlatformOptions& /*options*/) -> std::shared_ptr<LogSink> {
  return std::make_shared<JournalLog>();
};

}  // namespace fyn::productionrules
