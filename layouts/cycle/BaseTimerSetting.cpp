#include "layouts/cycle/BaseTimerSetting.h"

#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {
unsigned long wide(std::uint32_t value) {
  return value;
}
}  // namespace

void BaseTimerSetting::printCurrentTimerValues(const std::string& tag) const {
  PRB_LOGD(tag.c_str(),
           " %s ,gfHeadLeft: %lu, gfHeadOnEdge: %lu, gfHeadOutside: %lu, gfMoveCloseTimer: %lu, "
           "gfToOtherLayoutChangeTimer: %lu, roomToOtherLayoutChangeTimer: %lu",
           "printCurrentTimerValues", wide(gfHeadLeft), wide(gfHeadOnEdge), wide(gfHeadOutside),
           wide(gfMoveCloseTimer), wide(gfToOtherLayoutChangeTimer), wide(roomToOtherLayoutChangeTimer));
}

}  // namespace fyn::productionrules
