#include "layouts/speaker/SpeakerWaits.h"

#include "layouts/speaker/SpeakerFramingTimerSetting.h"

namespace fyn::productionrules {

const WaitRule* findSpeakerWait(FramingType from, FramingType to) {
  using Setting = SpeakerFramingTimerSetting;
  static const WaitRule kRules[] = {
      {FramingType::PROXIMITY, FramingType::GROUP, WaitCondition::Always,
       waitOf(&Setting::proxToGFLayoutChangeTimer)},
      {kAnyLayout, FramingType::GROUP, WaitCondition::Always, waitOf(&Setting::anyToGFLayoutChangeTimer)},
      {FramingType::PROXIMITY, FramingType::PROXIMITY, WaitCondition::Always,
       waitOf(&Setting::proxToProxLayoutChangeTimer)},
      {FramingType::SUBSET_SPEAKER, FramingType::PROXIMITY, WaitCondition::Always,
       waitOf(&Setting::ssToProxLayoutChangeTimer)},
      {kAnyLayout, FramingType::PROXIMITY, WaitCondition::Always,
       waitOf(&Setting::anyToProxLayoutChangeTimer)},
      {FramingType::PROXIMITY, FramingType::HEAD, WaitCondition::Always,
       waitOf(&Setting::proxToHeadLayoutChangeTimer)},
      {FramingType::SUBSET_SPEAKER, FramingType::HEAD, WaitCondition::Always,
       waitOf(&Setting::ssToHeadLayoutChangeTimer)},
      {kAnyLayout, FramingType::HEAD, WaitCondition::Always, waitOf(&Setting::frameSpeakerLayoutChangeTimer)},
      {FramingType::SUBSET_SPEAKER, FramingType::SUBSET_SPEAKER, WaitCondition::Always,
       waitOf(&Setting::frameSpeakerLayoutChangeTimer)},
      {kAnyLayout, FramingType::SUBSET_SPEAKER, WaitCondition::Always,
       waitOf(&Setting::otherToSsLayoutChangeTimer)},
  };
  return findWaitRule(kRules, from, to == FramingType::ROOM ? FramingType::GROUP : to, false);
}

}  // namespace fyn::productionrules
