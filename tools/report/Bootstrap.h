#pragma once

#include <optional>
#include <vector>

namespace fyn::productionrules {

/** A mean and the interval that covers it with 95 per cent. */
struct MeanInterval {
  double mean = 0;
  double low = 0;
  double high = 0;

  bool excludesZero() const { return low > 0 || high < 0; }
};

/**
 * The percentile bootstrap interval of the mean of `differences`, one per pair (Efron and Tibshirani, An
 * Introduction to the Bootstrap, 1993): 10000 draws with replacement from a fixed seed, so the same
 * differences give the same interval. Nothing for fewer than two.
 */
std::optional<MeanInterval> bootstrapInterval(const std::vector<double>& differences);

}  // namespace fyn::productionrules
