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

std::string localTimeText(std::int64_t wallMs) {
  const auto seconds = static_cast<std::time_t>(wallMs / 1000);
  std::tm local{};
  localtime_r(&seconds, &local);
  std::array<char, 40> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  std::snprintf(text.data() + length, text.size() - length, ".%03d", static_cast<int>(wallMs % 1000));
  return text.data();
}

void StderrLog::write(LogPriority priority, const char* tag, const char* text) {
  const std::string time = localTimeText(SteadyClock().wallMs());
  const std::string line = cleanLogText(text);
  const MutexLock lock(mMutex);
  std::fprintf(stderr, "%s %c %s: %s\n", time.c_str(), logPriorityLetter(priority), tag, line.c_str());
}

}  // namespace fyn::productionrules
