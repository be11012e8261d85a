#pragma once

#include <cstdint>
#include <string>

namespace fyn::productionrules {

/** A wait that is never started. */
constexpr std::uint32_t kInvalidTimer = 0xFFFFFFFFU;

/** The waits of an engine, in milliseconds; kInvalidTimer marks one that is never started. */
class BaseTimerSetting {
 public:
  virtual ~BaseTimerSetting() = default;

  /** Logs every value with `tag`. */
  virtual void printCurrentTimerValues(const std::string& tag) const;

  /** Reframe wait for GROUP_MOVE_CLOSE. */
  std::uint32_t gfMoveCloseTimer = 0;
  /** Reframe wait for GROUP_HEAD_LEFT. */
  std::uint32_t gfHeadLeft = 0;
  /** Reframe wait for GROUP_HEAD_ON_EDGE. */
  std::uint32_t gfHeadOnEdge = 0;
  /** Reframe wait for GROUP_HEAD_OUTSIDE. */
  std::uint32_t gfHeadOutside = 0;
  /** Layout change away from a GROUP layout. */
  std::uint32_t gfToOtherLayoutChangeTimer = 0;
  /** Layout change away from a ROOM layout and, in the base rule, from any that is not a group. */
  std::uint32_t roomToOtherLayoutChangeTimer = 0;
};

}  // namespace fyn::productionrules
