// The macros of the header would add this file's name and line to every record.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include "platform/linux/journal/JournalLog.h"

#include <systemd/sd-journal.h>

#include <cstring>
#include <memory>

#include "platform/Backends.h"

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
  std::size_t length = std::strlen(text);
  while (length > 0 && text[length - 1] == '\n') {
    --length;
  }
  sd_journal_send("PRIORITY=%d", syslogLevel(priority), "PRB_TAG=%s", tag, "MESSAGE=%s: %.*s", tag,
                  static_cast<int>(length), text, nullptr);
}

const LogBackend::Maker kMakeJournalLog = [](const PlatformOptions& /*options*/) -> std::shared_ptr<LogSink> {
  return std::make_shared<JournalLog>();
};

}  // namespace fyn::productionrules
