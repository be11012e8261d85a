#include "layouts/group/GroupFramingTimerSetting.h"

#include "config/PrConfig.h"

namespace fyn::productionrules {

namespace {

using Setting = GroupFramingTimerSetting;

const WaitSources& waitSources() {
  static const WaitSources kSources{
      {waitOf(&Setting::gfMoveCloseTimer), "gfMoveCloseTimer", &PrConfig::timersGroupFrameMoveCloser},
      {waitOf(&Setting::gfHeadLeft), "gfHeadLeft", &PrConfig::timersGroupFrameHeadLeft},
      {waitOf(&Setting::gfHeadOnEdge), "gfHeadOnEdge", &PrConfig::timersGroupFrameOnEdge},
      {waitOf(&Setting::gfHeadOutside), "gfHeadOutside", &PrConfig::timersGroupFrameOutside},
      {waitOf(&Setting::gfToOtherLayoutChangeTimer), "gfToOtherLayoutChangeTimer",
       &PrConfig::timersLayoutChangeGf2Other},
      {waitOf(&Setting::roomToOtherLayoutChangeTimer), "roomToOtherLayoutChangeTimer",
       &PrConfig::timersLayoutChangeRoom2Other},
      {waitOf(&Setting::outsideFrameTimer), "outsideFrameTimer", &PrConfig::timersHeadBoundBoxOutOfFrame},
      {waitOf(&Setting::onFrameEdgeTimer), "onFrameEdgeTimer", &PrConfig::timersHeadBufferOnEdge},
      {waitOf(&Setting::offCenterTimer), "offCenterTimer", &PrConfig::timersHeadBoundBoxOffcenter},
      {waitOf(&Setting::proxToHeadLayoutChangeTimer), "proxToHeadLayoutChangeTimer",
       &PrConfig::timersLayoutChangeProx2Head},
      {waitOf(&Setting::proxToProxLayoutChangeTimer), "proxToProxLayoutChangeTimer",
       &PrConfig::timersLayoutChangeProx2Prox},
      {waitOf(&Setting::proxToGFLayoutChangeTimer), "proxToGFLayoutChangeTimer",
       &PrConfig::timersLayoutChangeProx2Gf},
  };
  return kSources;
}

}  // namespace

GroupFramingTimerSetting::GroupFramingTimerSetting(const PrConfig& config) {
  takeWaits(config, waitSources());
}

const WaitSources& GroupFramingTimerSetting::sources() const {
  return waitSources();
}

}  // namespace fyn::productionrules
