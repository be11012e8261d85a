#include "layouts/cycle/SingleHeadTimerSetting.h"

#include "config/PrConfig.h"

namespace fyn::productionrules {

namespace {

using Setting = SingleHeadTimerSetting;

/** A wait that every engine of single heads has. */
struct SharedWait {
  WaitField wait;
  const char* name;
  WaitTunable inGroupFraming;
  WaitTunable inPeopleFraming;
};

WaitSources sharedWaits(WaitTunable SharedWait::*mode, const WaitSources& others) {
  static constexpr SharedWait kShared[] = {
      {&Setting::gfMoveCloseTimer, "gfMoveCloseTimer", &PrConfig::timersGroupFrameMoveCloser,
       &PrConfig::timersPFGroupFrameMoveCloser},
      {&Setting::gfHeadLeft, "gfHeadLeft", &PrConfig::timersGroupFrameHeadLeft,
       &PrConfig::timersPFGroupFrameHeadLeft},
      {&Setting::gfHeadOnEdge, "gfHeadOnEdge", &PrConfig::timersGroupFrameOnEdge,
       &PrConfig::timersPFGroupFrameOnEdge},
      {&Setting::gfHeadOutside, "gfHeadOutside", &PrConfig::timersGroupFrameOutside,
       &PrConfig::timersPFGroupFrameOutside},
      {&Setting::gfToOtherLayoutChangeTimer, "gfToOtherLayoutChangeTimer",
       &PrConfig::timersLayoutChangeGf2Other, &PrConfig::timersPFLayoutChangeGf2Other},
      {&Setting::roomToOtherLayoutChangeTimer, "roomToOtherLayoutChangeTimer",
       &PrConfig::timersLayoutChangeRoom2Other, &PrConfig::timersPFLayoutChangeRoom2Other},
      {waitOf(&Setting::outsideFrameTimer), "outsideFrameTimer", &PrConfig::timersHeadBoundBoxOutOfFrame,
       &PrConfig::timersPFHeadBoundBoxOutOfFrame},
      {waitOf(&Setting::onFrameEdgeTimer), "onFrameEdgeTimer", &PrConfig::timersHeadBufferOnEdge,
       &PrConfig::timersPFHeadBufferOnEdge},
      {waitOf(&Setting::offCenterTimer), "offCenterTimer", &PrConfig::timersHeadBoundBoxOffcenter,
       &PrConfig::timersPFHeadBoundBoxOffcenter},
  };
  WaitSources rows;
  for (const SharedWait& shared : kShared) {
    rows.push_back({shared.wait, shared.name, shared.*mode});
  }
  rows.insert(rows.end(), others.begin(), others.end());
  return rows;
}

}  // namespace

WaitSources SingleHeadTimerSetting::withGroupFramingKeys(const WaitSources& others) {
  return sharedWaits(&SharedWait::inGroupFraming, others);
}

WaitSources SingleHeadTimerSetting::withPeopleFramingKeys(const WaitSources& others) {
  return sharedWaits(&SharedWait::inPeopleFraming, others);
}

WaitField SingleHeadTimerSetting::singleHeadWait(HeadPosition position) {
  switch (position) {
    case HeadPosition::HEAD_ON_EDGE:
      return waitOf(&SingleHeadTimerSetting::onFrameEdgeTimer);
    case HeadPosition::HEAD_OFF_CENTER:
      return waitOf(&SingleHeadTimerSetting::offCenterTimer);
    case HeadPosition::HEAD_OUTSIDE:
      return waitOf(&SingleHeadTimerSetting::outsideFrameTimer);
    default:
      return nullptr;
  }
}

}  // namespace fyn::productionrules
