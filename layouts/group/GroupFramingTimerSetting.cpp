#include "layouts/group/GroupFramingTimerSetting.h"

#include "config/PrConfig.h"

namespace fyn::productionrules {

GroupFramingTimerSetting::GroupFramingTimerSetting(const PrConfig& config) {
  takeWaits(config, GroupFramingTimerSetting::sources());
}

const WaitSources& GroupFramingTimerSetting::sources() const {
  using Setting = GroupFramingTimerSetting;
  static const WaitSources kSources = withGroupFramingKeys({
      {waitOf(&Setting::proxToHeadLayoutChangeTimer), "proxToHeadLayoutChangeTimer",
       &PrConfig::timersLayoutChangeProx2Head},
      {waitOf(&Setting::proxToProxLayoutChangeTimer), "proxToProxLayoutChangeTimer",
       &PrConfig::timersLayoutChangeProx2Prox},
      {waitOf(&Setting::proxToGFLayoutChangeTimer), "proxToGFLayoutChangeTimer",
       &PrConfig::timersLayoutChangeProx2Gf},
  });
  return kSources;
}

}  // namespace fyn::productionrules
