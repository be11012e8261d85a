#include "layouts/people/PeopleFrameTimerSetting.h"

#include "config/PrConfig.h"
#include "model/Arithmetic.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

// Milliseconds by which each counted vision result shortens the wait after people have left.
constexpr std::int32_t kReductionPerCount = 80;

std::uint32_t ms(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}
unsigned long wide(std::uint32_t value) {
  return value;
}

}  // namespace

PeopleFrameTimerSetting::PeopleFrameTimerSetting(const PrConfig& config) {
  gfMoveCloseTimer = ms(config.timersPFGroupFrameMoveCloser);
  gfHeadLeft = ms(config.timersPFGroupFrameHeadLeft);
  gfHeadOnEdge = ms(config.timersPFGroupFrameOnEdge);
  gfHeadOutside = ms(config.timersPFGroupFrameOutside);
  gfToOtherLayoutChangeTimer = ms(config.timersPFLayoutChangeGf2Other);
  roomToOtherLayoutChangeTimer = ms(config.timersPFLayoutChangeRoom2Other);
  outsideFrameTimer = ms(config.timersPFHeadBoundBoxOutOfFrame);
  onFrameEdgeTimer = ms(config.timersPFHeadBufferOnEdge);
  offCenterTimer = ms(config.timersPFHeadBoundBoxOffcenter);
  proxToHeadLayoutChangeTimer = ms(config.timersPFLayoutChangeProx2Head);
  proxToProxLayoutChangeTimer = ms(config.timersPFLayoutChangeProx2Prox);
  proxToGFLayoutChangeTimer = ms(config.timersPFLayoutChangeProx2Gf);
  headToOtherLayoutChangeTimer = ms(config.timersPFLayoutChangeHead2Other);
  // Kept: the two waits for a changed count and for changed places are those without PF in their name.
  headCountLayoutChangeTimer = ms(config.timersLayoutChangeHeadCountChange);
  headPosLayoutChangeTimer = ms(config.timersLayoutChangeHeadPosChange);
  peopleLeftTimerReduction = ms(wrapMul(config.realHeadCounterMax, kReductionPerCount));
  roomToHeadLayoutChangeTimer = ms(config.timersPFLayoutChangeRoom2Head);
  feedPriorityChangedTimer = ms(config.timersPFFeedPriorityChange);
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
