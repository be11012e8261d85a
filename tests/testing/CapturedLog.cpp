#include "tests/testing/CapturedLog.h"

#include <utility>

#include "platform/StderrLog.h"
#include "platform/SystemEnvironment.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules::testing {

CapturedLog::CapturedLog(int level)
    : mFormerLevel(VisionSettings::logLevel()), mFormerLog(SystemEnvironment::log()) {
  SystemEnvironment::setLog(this);
  VisionSettings::setLogLevel(level);
}

CapturedLog::~CapturedLog() {
  SystemEnvironment::setLog(&mFormerLog);
  VisionSettings::setLogLevel(mFormerLevel);
}

void CapturedLog::write(LogPriority priority, const char* tag, const char* text) {
  std::string line(1, logPriorityLetter(priority));
  line.append("|").append(tag).append("|").append(text);
  const MutexLock lock(mMutex);
  mLines.push_back(std::move(line));
}

std::vector<std::string> CapturedLog::lines() const {
  const MutexLock lock(mMutex);
  return mLines;
}

std::vector<std::string> CapturedLog::take() {
  const MutexLock lock(mMutex);
  return std::exchange(mLines, {});
}

}  // namespace fyn::productionrules::testing
