#include "layouts/cycle/BaseTimerSetting.h"

#include <algorithm>

#include "config/PrConfig.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {
unsigned long wide(std::uint32_t value) {
  return value;
}
}  // namespace

const WaitSource* BaseTimerSetting::findSource(WaitField wait) const {
  const WaitSources& rows = sources();
  const auto row =
      std::find_if(rows.begin(), rows.end(), [&](const WaitSource& each) { return each.wait == wait; });
  return row != rows.end() ? &*row : nullptr;
}

const WaitSources& BaseTimerSetting::sources() const {
  static const WaitSources kNone;
  return kNone;
}

void BaseTimerSetting::takeWaits(const PrConfig& config, const WaitSources& sources) {
  for (const WaitSource& source : sources) {
    this->*source.wait = static_cast<std::uint32_t>(config.*source.tunable);
  }
}

WaitField BaseTimerSetting::groupReframeWait(HeadPosition position) {
  switch (position) {
    case HeadPosition::GROUP_MOVE_CLOSE:
      return &BaseTimerSetting::gfMoveCloseTimer;
    case HeadPosition::GROUP_HEAD_LEFT:
      return &BaseTimerSetting::gfHeadLeft;
    case HeadPosition::GROUP_HEAD_ON_EDGE:
      return &BaseTimerSetting::gfHeadOnEdge;
    case HeadPosition::GROUP_HEAD_OUTSIDE:
      return &BaseTimerSetting::gfHeadOutside;
    default:
      return nullptr;
  }
}

void BaseTimerSetting::printCurrentTimerValues(const std::string& tag) const {
  PRB_LOGD(tag.c_str(),
           " %s ,gfHeadLeft: %lu, gfHeadOnEdge: %lu, gfHeadOutside: %lu, gfMoveCloseTimer: %lu, "
           "gfToOtherLayoutChangeTimer: %lu, roomToOtherLayoutChangeTimer: %lu",
           "printCurrentTimerValues", wide(gfHeadLeft), wide(gfHeadOnEdge), wide(gfHeadOutside),
           wide(gfMoveCloseTimer), wide(gfToOtherLayoutChangeTimer), wide(roomToOtherLayoutChangeTimer));
}

}  // namespace fyn::productionrules
