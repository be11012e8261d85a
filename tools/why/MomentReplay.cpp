#include "tools/why/MomentReplay.h"

#include "platform/ServiceStateScope.h"

namespace fyn::productionrules {

MomentReplay::MomentReplay(const std::string& path, const MeasuredSetup& setup,
                           const std::optional<KeyChange>& change)
    : mChange(change),
      mInput(path, mNoInput),
      mReader(mInput.stream(), mInput.name()),
      mMeter(setup.stream),
      mReplay(optionsFor(setup, change), *this) {
  mHasNext = mReader.next(mNext);
}

ReplayOptions MomentReplay::optionsFor(const MeasuredSetup& setup, const std::optional<KeyChange>& change) {
  const MeasuredSetup inForce = change ? changedSetup(setup, *change) : setup;
  ReplayOptions options;
  options.configuration = inForce.configuration;
  options.properties = inForce.properties;
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
