#include "layouts/people/PeopleWaits.h"

#include "layouts/people/PeopleFrameTimerSetting.h"

namespace fyn::productionrules {

const WaitRule* findPeopleWait(FramingType from, FramingType to, bool peopleCountChanged) {
  using Setting = PeopleFrameTimerSetting;
  static const WaitRule kRules[] = {
      {FramingType::ROOM, FramingType::HEAD, WaitCondition::Always,
       waitOf(&Setting::roomToHeadLayoutChangeTimer), "roomToHeadLayoutChangeTimer: "},
      {FramingType::ROOM, FramingType::PROXIMITY, WaitCondition::Always,
       waitOf(&Setting::roomToHeadLayoutChangeTimer), "roomToHeadLayoutChangeTimer: "},
      {FramingType::ROOM, kAnyLayout, WaitCondition::Always, &Setting::roomToOtherLayoutChangeTimer,
       "roomToOtherLayoutChangeTimer: "},
      {FramingType::PROXIMITY, FramingType::HEAD, WaitCondition::Always,
       waitOf(&Setting::proxToHeadLayoutChangeTimer), "proxToHeadLayoutChangeTimer: "},
      {FramingType::PROXIMITY, FramingType::PROXIMITY, WaitCondition::Always,
       waitOf(&Setting::proxToProxLayoutChangeTimer), "proxToProxLayoutChangeTimer: "},
      {FramingType::PROXIMITY, kAnyLayout, WaitCondition::Always, waitOf(&Setting::proxToGFLayoutChangeTimer),
       "proxToGFLayoutChangeTimer: "},
      {FramingType::HEAD, FramingType::HEAD, WaitCondition::PeopleCountChanged,
       waitOf(&Setting::headCountLayoutChangeTimer), "Head count changed: "},
      {FramingType::HEAD, FramingType::HEAD, WaitCondition::Always,
       waitOf(&Setting::headPosLayoutChangeTimer), "Head position changed: "},
      {FramingType::HEAD, kAnyLayout, WaitCondition::Always, waitOf(&Setting::headToOtherLayoutChangeTimer),
       "Head to other layout change timer: "},
  };
  return findWaitRule(kRules, from, to, peopleCountChanged);
}

}  // namespace fyn::productionrules
