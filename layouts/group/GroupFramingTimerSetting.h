#pragma once

#include "layouts/cycle/BaseTimerSetting.h"

namespace fyn::productionrules {

struct PrConfig;

/** The waits of the group engines, in milliseconds. */
class GroupFramingTimerSetting : public BaseTimerSetting {
 public:
  GroupFramingTimerSetting() = default;

  /** Takes every wait that group framing has a key for; the last two stay 0. */
  explicit GroupFramingTimerSetting(const PrConfig& config);

  /** Reframe wait for HEAD_OUTSIDE. */
  std::uint32_t outsideFrameTimer = 0;
  /** Reframe wait for HEAD_ON_EDGE. */
  std::uint32_t onFrameEdgeTimer = 0;
  /** Reframe wait for HEAD_OFF_CENTER. */
  std::uint32_t offCenterTimer = 0;
  std::uint32_t proxToHeadLayoutChangeTimer = 0;
  std::uint32_t proxToProxLayoutChangeTimer = 0;
  std::uint32_t proxToGFLayoutChangeTimer = 0;
  std::uint32_t headToOtherLayoutChangeTimer = 0;
  std::uint32_t headCountLayoutChangeTimer = 0;
};

}  // namespace fyn::productionrules
