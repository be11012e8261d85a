#include "tools/replay/ReplayEnvironment.h"

namespace fyn::productionrules {

namespace {

// What the clocks read at the recording's time 0, in milliseconds.
constexpr std::uint64_t kMonotonicStart = 1000000;
constexpr std::int64_t kWallStart = 1700000000000;

class ObserverLog final : public LogSink {
 public:
  explicit ObserverLog(ReplayObserver& observer) : mObserver(observer) {}
  void write(LogPriority priority, const char* tag, const char* text) override {
    mObserver.onLog(priority, tag, text);
  }

 private:
  ReplayObserver& mObserver;
};

}  // namespace

ReplayEnvironment::ReplayEnvironment(ReplayObserver& observer, int logLevel)
    : mTime(std::make_shared<VirtualTime>(kMonotonicStart, kWallStart)) {
  mState->setClock(mTime);
  mState->setLog(std::make_shared<ObserverLog>(observer), logLevel);
  mState->setProperties(mProperties);
  mState->setFiles([configuration = mConfiguration](const std::string& /*path*/) { return *configuration; });
}

}  // namespace fyn::productionrules
