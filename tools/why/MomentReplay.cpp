#include "tools/why/MomentReplay.h"

#include "platform/ServiceStateScope.h"
#include "tools/tune/SearchSpace.h"

namespace fyn::productionrules {

MomentReplay::MomentReplay(const std::string& path, const MeasuredSetup& setup,
                           const std::optional<KeyChange>& change)
    : mChange(change),
      mInput(path, mNoInput),
      mReader(mInput.stream(), mInput.name()),
      mMeter(setup.stream),
      mReplay(optionsFor(setup, change), *this) {
  mHasNext = mReader.next(mNext);
  if (mHasNext && mChange) {
    RecordingEvent first{mNext.t, ReplaceConfig{}};
    applyTo(first, *mChange);
    mReplay.handle(first);
  }
}

ReplayOptions MomentReplay::optionsFor(const MeasuredSetup& setup, const std::optional<KeyChange>& change) {
  ReplayOptions options;
  options.configuration = setup.configuration;
  if (change && setup.configuration) {
    options.configuration =
        configurationWith(*setup.configuration, {{std::string(change->key->key), change->to}});
  }
  options.properties = setup.properties;
  options.dumpPath = "/dev/null";
  options.standardOutput = &mPrinted;
  options.decisions = this;
  return options;
}

bool MomentReplay::playUntil(std::int64_t t, const GivenUp& isGivenUp, const AfterEvent& afterEvent) {
  while (mHasNext && mNext.t <= t && !isGivenUp()) {
    handleNext(afterEvent);
  }
  return mHasNext;
}

void MomentReplay::playToEnd(const AfterEvent& afterEvent) {
  while (mHasNext) {
    handleNext(afterEvent);
  }
  mMeter.finish(mReplay);
}

void MomentReplay::handleNext(const AfterEvent& afterEvent) {
  if (mChange) {
    applyTo(mNext, *mChange);
  }
  mMeter.handle(mReplay, mNext);
  if (afterEvent) {
    afterEvent(mNext);
  }
  mHasNext = mReader.next(mNext);
}

PrConfig MomentReplay::configuration() {
  const ServiceStateScope scope(mReplay.state());
  return PrConfig::get();
}

void MomentReplay::onDecision(const LayoutDecision& decision) {
  mMeter.onDecision(decision);
  mWaits.take(mReplay.now(), decision);
  mDecisions.push_back({mReplay.now(), decision});
}

}  // namespace fyn::productionrules
