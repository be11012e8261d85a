#include "platform/StderrLog.h"

#include <array>
#include <cstdio>
#include <ctime>

#include "platform/LogText.h"
#include "platform/SteadyClock.h"

namespace fyn::productionrules {

char logPriorityLetter(LogPriority priority) {
  switch (priority) {
    case LogPriority::error:
      return 'E';
    case LogPriority::warning:
      return 'W';
    case LogPriority::info:
      return 'I';
    case LogPriority::debug:
      break;
  }
  return 'D';
}

void StderrLog::write(LogPriority priority, const char* tag, const char* text) {
  const std::int64_t wallMs = SteadyClock().wallMs();
  const auto seconds = static_cast<std::time_t>(wallMs / 1000);
  std::tm local{};
  localtime_r(&seconds, &local);
  std::array<char, 32> stamp{};
  std::strftime(stamp.data(), stamp.size(), "%Y-%m-%d %H:%M:%S", &local);

  const std::string line = cleanLogText(text);
  const MutexLock lock(mMutex);
  std::fprintf(stderr, "%s.%03d %c %s: %s\n", stamp.data(), static_cast<int>(wallMs % 1000),
               logPriorityLetter(priority), tag, line.c_str());
}

}  // namespace fyn::productionrules
