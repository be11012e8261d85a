#include "layouts/speaker/SpeakerFramingTimerSetting.h"

#include <algorithm>
#include <array>

#include "config/PrConfig.h"

namespace fyn::productionrules {

namespace {

// A negative number of the configuration becomes a very long wait, -1 one that is never started.
std::uint32_t ms(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}

/** One row of the table of waits; NONE stands for every type that has no row of its own above. */
struct WaitRow {
  FramingType to;
  FramingType from;
  std::uint32_t SpeakerFramingTimerSetting::*wait;
  const char* name;
};

using Setting = SpeakerFramingTimerSetting;

constexpr FramingType kAny = FramingType::NONE;

constexpr std::array<WaitRow, 10> kWaits{{
    {FramingType::GROUP, FramingType::PROXIMITY, &Setting::proxToGFLayoutChangeTimer,
     "proxToGFLayoutChangeTimer"},
    {FramingType::GROUP, kAny, &Setting::anyToGFLayoutChangeTimer, "anyToGFLayoutChangeTimer"},
    {FramingType::PROXIMITY, FramingType::PROXIMITY, &Setting::proxToProxLayoutChangeTimer,
     "proxToProxLayoutChangeTimer"},
    {FramingType::PROXIMITY, FramingType::SUBSET_SPEAKER, &Setting::ssToProxLayoutChangeTimer,
     "ssToProxLayoutChangeTimer"},
    {FramingType::PROXIMITY, kAny, &Setting::anyToProxLayoutChangeTimer, "anyToProxLayoutChangeTimer"},
    {FramingType::HEAD, FramingType::PROXIMITY, &Setting::proxToHeadLayoutChangeTimer,
     "proxToHeadLayoutChangeTimer"},
    {FramingType::HEAD, FramingType::SUBSET_SPEAKER, &Setting::ssToHeadLayoutChangeTimer,
     "ssToHeadLayoutChangeTimer"},
    {FramingType::HEAD, kAny, &Setting::frameSpeakerLayoutChangeTimer, "frameSpeakerLayoutChangeTimer"},
    {FramingType::SUBSET_SPEAKER, FramingType::SUBSET_SPEAKER, &Setting::frameSpeakerLayoutChangeTimer,
     "frameSpeakerLayoutChangeTimer"},
    {FramingType::SUBSET_SPEAKER, kAny, &Setting::otherToSsLayoutChangeTimer, "otherToSsLayoutChangeTimer"},
}};

}  // namespace

SpeakerFramingTimerSetting::SpeakerFramingTimerSetting(const PrConfig& config) {
  gfMoveCloseTimer = ms(config.timersGroupFrameMoveCloser);
  gfHeadLeft = ms(config.timersGroupFrameHeadLeft);
  gfHeadOnEdge = ms(config.timersGroupFrameOnEdge);
  gfHeadOutside = ms(config.timersGroupFrameOutside);
  gfToOtherLayoutChangeTimer = ms(config.timersLayoutChangeGf2Other);
  roomToOtherLayoutChangeTimer = ms(config.timersLayoutChangeRoom2Other);
  outsideFrameTimer = ms(config.timersHeadBoundBoxOutOfFrame);
  onFrameEdgeTimer = ms(config.timersHeadBufferOnEdge);
  offCenterTimer = ms(config.timersHeadBoundBoxOffcenter);
  anyToGFLayoutChangeTimer = ms(config.timersLayoutChangeSfAny2Gf);
  proxToGFLayoutChangeTimer = ms(config.timersLayoutChangeSfProx2Gf);
  anyToProxLayoutChangeTimer = ms(config.timersLayoutChangeSfAny2Prox);
  proxToProxLayoutChangeTimer = ms(config.timersLayoutChangeSfProx2Prox);
  ssToProxLayoutChangeTimer = ms(config.timersLayoutChangeSfSs2Prox);
  proxToHeadLayoutChangeTimer = ms(config.timersLayoutChangeSfProx2Head);
  ssToHeadLayoutChangeTimer = ms(config.timersLayoutChangeSfSs2Head);
  frameSpeakerLayoutChangeTimer = ms(config.timersLayoutChangeSfFrameSpeaker);
  otherToSsLayoutChangeTimer = ms(config.timersLayoutChangeSfOther2Ss);
}

SpeakerFramingTimerSetting::Wait SpeakerFramingTimerSetting::layoutChangeWait(FramingType from,
                                                                              FramingType to) const {
  const FramingType target = to == FramingType::ROOM ? FramingType::GROUP : to;
  const auto row = std::find_if(kWaits.begin(), kWaits.end(), [&](const WaitRow& wait) {
    return wait.to == target && (wait.from == from || wait.from == kAny);
  });
  if (row == kWaits.end()) {
    return {"", 0};
  }
  return {row->name, this->*row->wait};
}

}  // namespace fyn::productionrules
