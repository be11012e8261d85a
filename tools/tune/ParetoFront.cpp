#include "tools/tune/ParetoFront.h"

#include <limits>

#include "tools/report/Metrics.h"

namespace fyn::productionrules {

namespace {

constexpr double kMostDistortedPercent = 1;

std::optional<double> valueOf(const char* metric, const Measurement& measurement) {
  return findMetric(metric)->value(measurement);
}

bool equal(const TradeOff& a, const TradeOff& b) {
  return a.changes == b.changes && a.latency == b.latency && a.inView == b.inView;
}

}  // namespace

std::optional<TradeOff> tradeOffOf(const Measurement& measurement) {
  const std::optional<double> changes = valueOf("changes_per_minute", measurement);
  if (!changes || valueOf("distorted_percent", measurement).value_or(0) > kMostDistortedPercent) {
    return std::nullopt;
  }
  const bool ignored = valueOf("unanswered_percent", measurement).value_or(0) > 0;
  const double withoutAnswer = ignored ? std::numeric_limits<double>::infinity() : 0;
  return TradeOff{*changes, valueOf("latency_s", measurement).value_or(withoutAnswer),
                  valueOf("in_view_percent", measurement).value_or(0)};
}

bool dominates(const TradeOff& a, const TradeOff& b) {
  return a.changes <= b.changes && a.latency <= b.latency && a.inView >= b.inView && !equal(a, b);
}

std::vector<std::size_t> paretoFront(const std::vector<TradeOff>& tradeOffs) {
  std::vector<std::size_t> front;
  for (std::size_t index = 0; index < tradeOffs.size(); ++index) {
    bool isBest = true;
    for (std::size_t other = 0; other < tradeOffs.size() && isBest; ++other) {
      isBest = !dominates(tradeOffs[other], tradeOffs[index]) &&
               !(other < index && equal(tradeOffs[other], tradeOffs[index]));
    }
    if (isBest) {
      front.push_back(index);
    }
  }
  return front;
}

}  // namespace fyn::productionrules
