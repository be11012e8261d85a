#include "tools/replay/ReplayEnvironment.h"

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "platform/SystemEnvironment.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

// What the clocks read at the recording's time 0, in milliseconds.
constexpr std::uint64_t kMonotonicStart = 1000000;
constexpr std::int64_t kWallStart = 1700000000000;

void resetProcessState() {
  PrConfig::set(PrConfig::DEFAULT);
  FynCamerasConfig::dispose();
  processTimes() = {};
  VisionSettings::setLogLevel(PrConfig::DEFAULT.prLogLevel);
}

}  // namespace

ReplayEnvironment::ReplayEnvironment(ReplayObserver& observer, int logLevel)
    : mObserver(observer), mTime(kMonotonicStart, kWallStart) {
  resetProcessState();
  VisionSettings::setLogCeiling(logLevel);
  SystemEnvironment::setClock(&mTime);
  SystemEnvironment::setLog(this);
  SystemEnvironment::setProperties(&mProperties);
  SystemEnvironment::setFiles([this](const std::string& /*path*/) { return mConfiguration; });
}

ReplayEnvironment::~ReplayEnvironment() {
  SystemEnvironment::reset();
  VisionSettings::setLogCeiling(VisionSettings::kDebugLevel);
  resetProcessState();
}

void ReplayEnvironment::write(LogPriority priority, const char* tag, const char* text) {
  mObserver.onLog(priority, tag, text);
}

}  // namespace fyn::productionrules
