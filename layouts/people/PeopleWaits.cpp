#include "layouts/people/PeopleWaits.h"

#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

PeopleWait fromRoom(const PeopleFrameTimerSetting& setting, FramingType next) {
  if (next == FramingType::HEAD || next == FramingType::PROXIMITY) {
    return {"roomToHeadLayoutChangeTimer",
            "roomToHeadLayoutChangeTimer: ", setting.roomToHeadLayoutChangeTimer};
  }
  return {"roomToOtherLayoutChangeTimer",
          "roomToOtherLayoutChangeTimer: ", setting.roomToOtherLayoutChangeTimer};
}

PeopleWait fromProximity(const PeopleFrameTimerSetting& setting, FramingType next) {
  switch (next) {
    case FramingType::HEAD:
      return {"proxToHeadLayoutChangeTimer",
              "proxToHeadLayoutChangeTimer: ", setting.proxToHeadLayoutChangeTimer};
    case FramingType::PROXIMITY:
      return {"proxToProxLayoutChangeTimer",
              "proxToProxLayoutChangeTimer: ", setting.proxToProxLayoutChangeTimer};
    default:
      return {"proxToGFLayoutChangeTimer", "proxToGFLayoutChangeTimer: ", setting.proxToGFLayoutChangeTimer};
  }
}

PeopleWait fromHead(const PeopleFrameTimerSetting& setting, FramingType next, bool peopleCountChanged) {
  if (next != FramingType::HEAD) {
    return {"headToOtherLayoutChangeTimer",
            "Head to other layout change timer: ", setting.headToOtherLayoutChangeTimer};
  }
  if (peopleCountChanged) {
    return {"headCountLayoutChangeTimer", "Head count changed: ", setting.headCountLayoutChangeTimer};
  }
  return {"headPosLayoutChangeTimer", "Head position changed: ", setting.headPosLayoutChangeTimer};
}

}  // namespace

PeopleWait findPeopleWait(const PeopleFrameTimerSetting& setting, FramingType current, FramingType next,
                          bool peopleCountChanged) {
  switch (current) {
    case FramingType::ROOM:
      return fromRoom(setting, next);
    case FramingType::PROXIMITY:
      return fromProximity(setting, next);
    case FramingType::HEAD:
      return fromHead(setting, next, peopleCountChanged);
    default:
      return {};
  }
}

std::uint32_t reduceWhenPeopleLeft(std::uint32_t ms, const PeopleFrameTimerSetting& setting,
                                   const Layout& current, const Layout& candidate, const char* tag) {
  const std::uint32_t wait =
      current.faceCount > candidate.faceCount ? ms - setting.peopleLeftTimerReduction : ms;
  const auto signedWait = static_cast<std::int32_t>(wait);
  if (signedWait < 0) {
    PRB_LOGE(tag, "Invalid wait time for layout change, wt: %d", signedWait);
    return 0;
  }
  return wait;
}

}  // namespace fyn::productionrules
