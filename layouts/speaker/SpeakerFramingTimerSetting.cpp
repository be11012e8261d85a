#include "layouts/speaker/SpeakerFramingTimerSetting.h"

#include "config/PrConfig.h"

namespace fyn::productionrules {

namespace {

using Setting = SpeakerFramingTimerSetting;

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
      {waitOf(&Setting::anyToGFLayoutChangeTimer), "anyToGFLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfAny2Gf},
      {waitOf(&Setting::proxToGFLayoutChangeTimer), "proxToGFLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfProx2Gf},
      {waitOf(&Setting::anyToProxLayoutChangeTimer), "anyToProxLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfAny2Prox},
      {waitOf(&Setting::proxToProxLayoutChangeTimer), "proxToProxLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfProx2Prox},
      {waitOf(&Setting::ssToProxLayoutChangeTimer), "ssToProxLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfSs2Prox},
      {waitOf(&Setting::proxToHeadLayoutChangeTimer), "proxToHeadLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfProx2Head},
      {waitOf(&Setting::ssToHeadLayoutChangeTimer), "ssToHeadLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfSs2Head},
      {waitOf(&Setting::frameSpeakerLayoutChangeTimer), "frameSpeakerLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfFrameSpeaker},
      {waitOf(&Setting::otherToSsLayoutChangeTimer), "otherToSsLayoutChangeTimer",
       &PrConfig::timersLayoutChangeSfOther2Ss},
  };
  return kSources;
}

}  // namespace

SpeakerFramingTimerSetting::SpeakerFramingTimerSetting(const PrConfig& config) {
  takeWaits(config, waitSources());
}

const WaitSources& SpeakerFramingTimerSetting::sources() const {
  return waitSources();
}

}  // namespace fyn::productionrules
