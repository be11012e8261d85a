#include "layouts/group/GroupFramingTimerSetting.h"

#include "config/PrConfig.h"

namespace fyn::productionrules {

namespace {
// A negative number of the configuration becomes a very long wait, -1 one that is never started.
std::uint32_t ms(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}
}  // namespace

GroupFramingTimerSetting::GroupFramingTimerSetting(const PrConfig& config) {
  gfMoveCloseTimer = ms(config.timersGroupFrameMoveCloser);
  gfHeadLeft = ms(config.timersGroupFrameHeadLeft);
  gfHeadOnEdge = ms(config.timersGroupFrameOnEdge);
  gfHeadOutside = ms(config.timersGroupFrameOutside);
  gfToOtherLayoutChangeTimer = ms(config.timersLayoutChangeGf2Other);
  roomToOtherLayoutChangeTimer = ms(config.timersLayoutChangeRoom2Other);
  outsideFrameTimer = ms(config.timersHeadBoundBoxOutOfFrame);
  onFrameEdgeTimer = ms(config.timersHeadBufferOnEdge);
  offCenterTimer = ms(config.timersHeadBoundBoxOffcenter);
  proxToHeadLayoutChangeTimer = ms(config.timersLayoutChangeProx2Head);
  proxToProxLayoutChangeTimer = ms(config.timersLayoutChangeProx2Prox);
  proxToGFLayoutChangeTimer = ms(config.timersLayoutChangeProx2Gf);
}

}  // namespace fyn::productionrules
