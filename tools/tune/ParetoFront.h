#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tools/report/Measurement.h"

namespace fyn::productionrules {

/** What a candidate is judged by. */
struct TradeOff {
  /** Changes per minute: less is calmer. */
  double changes = 0;
  /** Seconds from an event to its answer, median; infinite when nothing was answered, 0 when nothing had to
   * be. */
  double latency = 0;
  /** Per cent of person-time fully in view. */
  double inView = 0;
};

/** Nothing when the measurement holds no picture, or for more than 1 per cent of the time a distorted one:
 * that is a fault which nothing makes up for. */
std::optional<TradeOff> tradeOffOf(const Measurement& measurement);

/** `a` is as good as `b` in everything and better in something. */
bool dominates(const TradeOff& a, const TradeOff& b);

/** The indices of the best trade-offs, ascending: those that no other one dominates. Of equal ones the first.
 */
std::vector<std::size_t> paretoFront(const std::vector<TradeOff>& tradeOffs);

}  // namespace fyn::productionrules
