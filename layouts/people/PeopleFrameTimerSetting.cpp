#include "layouts/people/PeopleFrameTimerSetting.h"

#include "config/PrConfig.h"
#include "model/Arithmetic.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

// Milliseconds by which each counted vision result shortens the wait after people have left.
constexpr std::int32_t kReductionPerCount = 80;

unsigned long wide(std::uint32_t value) {
  return value;
}

}  // namespace

PeopleFrameTimerSetting::PeopleFrameTimerSetting(const PrConfig& config) {
  takeWaits(config, PeopleFrameTimerSetting::sources());
  peopleLeftTimerReduction =
      static_cast<std::uint32_t>(wrapMul(config.realHeadCounterMax, kReductionPerCount));
}

const WaitSources& PeopleFrameTimerSetting::sources() const {
  using Setting = PeopleFrameTimerSetting;
  static const WaitSources kSources = withPeopleFramingKeys({
      {waitOf(&Setting::proxToHeadLayoutChangeTimer), "proxToHeadLayoutChangeTimer",
       &PrConfig::timersPFLayoutChangeProx2Head},
      {waitOf(&Setting::proxToProxLayoutChangeTimer), "proxToProxLayoutChangeTimer",
       &PrConfig::timersPFLayoutChangeProx2Prox},
      {waitOf(&Setting::proxToGFLayoutChangeTimer), "proxToGFLayoutChangeTimer",
       &PrConfig::timersPFLayoutChangeProx2Gf},
      {waitOf(&Setting::headToOtherLayoutChangeTimer), "headToOtherLayoutChangeTimer",
       &PrConfig::timersPFLayoutChangeHead2Other},
      // Kept: the two waits for a changed count and for changed places are those without PF in their name.
      {waitOf(&Setting::headCountLayoutChangeTimer), "headCountLayoutChangeTimer",
       &PrConfig::timersLayoutChangeHeadCountChange},
      {waitOf(&Setting::headPosLayoutChangeTimer), "headPosLayoutChangeTimer",
       &PrConfig::timersLayoutChangeHeadPosChange},
      {waitOf(&Setting::roomToHeadLayoutChangeTimer), "roomToHeadLayoutChangeTimer",
       &PrConfig::timersPFLayoutChangeRoom2Head},
      {waitOf(&Setting::feedPriorityChangedTimer), "feedPriorityChangedTimer",
       &PrConfig::timersPFFeedPriorityChange},
  });
  return kSources;
}

void PeopleFrameTimerSetting::printCurrentTimerValues(const std::string& tag) const {
  PRB_LOGI(
      tag.c_str(),
      "%s outsideFrameTimer: %lu, onFrameEdgeTimer: %lu, offCenterTimer: %lu,gfMoveCloseTimer: %lu,  "
      "proxToHeadLayoutChangeTimer: %lu,proxToProxLayoutChangeTimer: %lu, proxToGFLayoutChangeTimer: %lu, "
      "gfToOtherLayoutChangeTimer: %lu, feedPriorityChangedTimer: %lu, headToOtherLayoutChangeTimer: "
      "%lu,headCountLayoutChangeTimer: %lu, headPosLayoutChangeTimer: %lu,roomToOtherLayoutChangeTimer: %lu, "
      "roomToHeadLayoutChangeTimer: %lu",
      "printCurrentTimerValues", wide(outsideFrameTimer), wide(onFrameEdgeTimer), wide(offCenterTimer),
      wide(gfMoveCloseTimer), wide(proxToHeadLayoutChangeTimer), wide(proxToProxLayoutChangeTimer),
      wide(proxToGFLayoutChangeTimer), wide(gfToOtherLayoutChangeTimer), wide(feedPriorityChangedTimer),
      wide(headToOtherLayoutChangeTimer), wide(headCountLayoutChangeTimer), wide(headPosLayoutChangeTimer),
      wide(roomToOtherLayoutChangeTimer), wide(roomToHeadLayoutChangeTimer));
  BaseTimerSetting::printCurrentTimerValues(tag);
}

}  // namespace fyn::productionrules
