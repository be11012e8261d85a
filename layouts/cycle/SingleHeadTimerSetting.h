#pragma once

#include "layouts/cycle/BaseTimerSetting.h"

namespace fyn::productionrules {

/** The waits of an engine whose frames may follow single heads, in milliseconds. */
class SingleHeadTimerSetting : public BaseTimerSetting {
 public:
  /** The reframe wait for a position of a single head; null for any other position. */
  static WaitField singleHeadWait(HeadPosition position);

  /** Reframe wait for HEAD_OUTSIDE. */
  std::uint32_t outsideFrameTimer = 0;
  /** Reframe wait for HEAD_ON_EDGE. */
  std::uint32_t onFrameEdgeTimer = 0;
  /** Reframe wait for HEAD_OFF_CENTER. */
  std::uint32_t offCenterTimer = 0;

 protected:
  /** What sets the waits above and those of the base in group framing, and then `others`. */
  static WaitSources withGroupFramingKeys(const WaitSources& others);

  /** The same in people framing. */
  static WaitSources withPeopleFramingKeys(const WaitSources& others);
};

}  // namespace fyn::productionrules
