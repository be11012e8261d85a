#pragma once

#include <optional>
#include <vector>

#include "tools/report/Bootstrap.h"
#include "tools/report/MeasureRecordings.h"
#include "tools/report/Metrics.h"

namespace fyn::productionrules {

/** Fewer say nothing about meetings to come: of so many differences that are chance alone, one in 32 times
 * all have the same sign. */
inline constexpr std::size_t kFewestRecordings = 6;

/** What a change of configuration does to one metric. */
enum class Verdict {
  /** Fewer than two recordings have the figure with both configurations. */
  Unknown,
  /** Fewer than six recordings: chance alone would often give all their differences one direction. */
  TooFew,
  /** The interval of the difference contains 0: it is not larger than the spread between recordings. */
  WithinSpread,
  Better,
  Worse,
  /** Larger than the spread; neither direction is better. */
  Different,
};

struct MetricComparison {
  const Metric* metric = nullptr;
  /** Over all recordings together. */
  std::optional<double> a;
  std::optional<double> b;
  /** Recordings that have the figure with both configurations. */
  std::size_t pairs = 0;
  /** Of the differences B - A per recording; nothing for fewer than two pairs. */
  std::optional<MeanInterval> difference;
  Verdict verdict = Verdict::Unknown;
};

/** Compares metric by metric; both sides hold the same recordings in the same order. */
std::vector<MetricComparison> compareMeasurements(const std::vector<MeasuredRecording>& a,
                                                  const std::vector<MeasuredRecording>& b);

/** "within the spread", "better", ... */
const char* verdictText(Verdict verdict);

}  // namespace fyn::productionrules
