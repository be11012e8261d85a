#pragma once

#include <cstdint>

#include "layouts/people/PeopleFrameTimerSetting.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/** A layout change wait of people framing with the reason why it was chosen. */
struct PeopleWait {
  /** Name of the wait in the timer setting; "" when nothing waits. */
  const char* timer = "";
  /** How an explanation names it. */
  const char* explanation = "";
  std::uint32_t ms = 0;
};

/** The wait for a change from a layout that is not a group. */
PeopleWait findPeopleWait(const PeopleFrameTimerSetting& setting, FramingType current, FramingType next,
                          bool peopleCountChanged);

/**
 * `ms` less `peopleLeftTimerReduction` when the candidate has fewer people than the current layout. A wait
 * that is negative as a signed number is logged with `tag` and becomes 0.
 */
std::uint32_t reduceWhenPeopleLeft(std::uint32_t ms, const PeopleFrameTimerSetting& setting,
                                   const Layout& current, const Layout& candidate, const char* tag);

}  // namespace fyn::productionrules
