#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Enums.h"

namespace fyn::productionrules {

struct PrConfig;
class BaseTimerSetting;

/** A wait that is never started. */
constexpr std::uint32_t kInvalidTimer = 0xFFFFFFFFU;

/** One wait of a timer setting or of a class derived from it. */
using WaitField = std::uint32_t BaseTimerSetting::*;

template <typename Setting>
constexpr WaitField waitOf(std::uint32_t Setting::*field) {
  return static_cast<WaitField>(field);
}

/** Where the milliseconds of a wait come from; a negative number becomes a very long wait, -1 one that is
 * never started. */
using WaitTunable = std::int32_t PrConfig::*;

/** What sets one wait. */
struct WaitSource {
  WaitField wait;
  /** The name of the field. */
  const char* name;
  WaitTunable tunable;
};

using WaitSources = std::vector<WaitSource>;

/** The waits of an engine, in milliseconds; kInvalidTimer marks one that is never started. */
class BaseTimerSetting {
 public:
  virtual ~BaseTimerSetting() = default;

  /** Logs every value with `tag`. */
  virtual void printCurrentTimerValues(const std::string& tag) const;

  /** What sets a wait in settings of this class; null when no tunable does. */
  const WaitSource* findSource(WaitField wait) const;

  /** The reframe wait for a position of a group; null for any other position. */
  static WaitField groupReframeWait(HeadPosition position);

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

 protected:
  /** What sets the waits of this class. */
  virtual const WaitSources& sources() const;

  void takeWaits(const PrConfig& config, const WaitSources& sources);
};

}  // namespace fyn::productionrules
