#include "layouts/speaker/SpeakerFramingTimerSetting.h"

#include "config/PrConfig.h"

namespace fyn::productionrules {

SpeakerFramingTimerSetting::SpeakerFramingTimerSetting(const PrConfig& config) {
  takeWaits(config, SpeakerFramingTimerSetting::sources());
}

const WaitSources& SpeakerFramingTimerSetting::sources() const {
  using Setting = SpeakerFramingTimerSetting;
  static const WaitSources kSources = withGroupFramingKeys({
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
  });
  return kSources;
}

}  // namespace fyn::productionrules
