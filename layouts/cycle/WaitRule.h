#pragma once

#include <algorithm>

#include "layouts/cycle/BaseTimerSetting.h"

namespace fyn::productionrules {

/** Stands for every type of layout in a table of waits. */
constexpr FramingType kAnyLayout = FramingType::NONE;

enum class WaitCondition { Always, PeopleCountChanged };

/** One row of an engine family's table of layout change waits; the first row that fits a change counts. */
struct WaitRule {
  FramingType from;
  FramingType to;
  WaitCondition condition;
  WaitField wait;
  /** How an explanation names it. */
  const char* explanation = "";
};

/** The row for a change between two types of layout; null when such a change does not wait. */
template <typename Rules>
const WaitRule* findWaitRule(const Rules& rules, FramingType from, FramingType to, bool peopleCountChanged) {
  const auto fits = [](FramingType row, FramingType type) { return row == type || row == kAnyLayout; };
  const auto found = std::find_if(std::begin(rules), std::end(rules), [&](const WaitRule& rule) {
    return fits(rule.from, from) && fits(rule.to, to) &&
           (rule.condition == WaitCondition::Always || peopleCountChanged);
  });
  return found != std::end(rules) ? &*found : nullptr;
}

}  // namespace fyn::productionrules
