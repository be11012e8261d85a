#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/report/Measurement.h"

namespace fyn::productionrules {

/** What makes a picture better. */
enum class Better { Lower, Higher, Neither };

/** One figure of a report. docs/measuring.md defines each. */
struct Metric {
  /** In JSON and in the expressions of `prb tune`. */
  const char* name;
  const char* label;
  const char* unit;
  /** Digits after the point, for people. */
  int digits;
  Better better;
  /** Nothing where the recording holds nothing to measure. */
  std::optional<double> (*value)(const Measurement& measurement);
};

/** Every metric, in the order of the report. The same recording always gives the same values. */
const std::vector<Metric>& metrics();

/** The metrics of the time that a decision takes, which differs from run to run. */
const std::vector<Metric>& timingMetrics();

/** Null for an unknown name. */
const Metric* findMetric(std::string_view name);

/** By what it is known who was there and spoke: "the truth", "the vision results", or both. */
std::string measuredAgainst(const Measurement& measurement);

/** The value as the terminal and the page show it: "12.5", "-" for nothing. */
std::string metricText(const Metric& metric, std::optional<double> value);

/** {"name": value or null, ...} in the order of the table. */
nlohmann::ordered_json metricsAsJson(const std::vector<Metric>& table, const Measurement& measurement);

/** How people are told of it: {"name", "label", "unit", "digits"}. */
nlohmann::ordered_json metricNames(const Metric& metric);

}  // namespace fyn::productionrules
