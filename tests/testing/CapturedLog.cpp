#include "tests/testing/CapturedLog.h"

#include <utility>

#include "platform/StderrLog.h"

namespace fyn::productionrules::testing {

CapturedLog::CapturedLog(int level) {
  ServiceState::current().setLog(mSink);
  ServiceState::current().setLogLevel(level);
}

void CapturedLog::Sink::write(LogPriority priority, const char* tag, const char* text) {
  std::string line(1, logPriorityLetter(priority));
  line.append("|").append(tag).append("|").append(text);
  const MutexLock lock(mMutex);
  mLines.push_back(std::move(line));
}

std::vector<std::string> CapturedLog::Sink::lines() const {
  const MutexLock lock(mMutex);
  return mLines;
}

std::vector<std::string> CapturedLog::Sink::take() {
  const MutexLock lock(mMutex);
  return std::exchange(mLines, {});
}

}  // namespace fyn::productionrules::testing
