#include "platform/linux/prometheus/ServiceMetrics.h"

#include <array>
#include <chrono>
#include <limits>
#include <string>
#include <utility>

namespace fyn::productionrules {

namespace {

using prometheus::ClientMetric;
using prometheus::MetricFamily;
using prometheus::MetricType;
using Reading = ServiceHealth::Reading;
using Seconds = std::chrono::duration<double>;

struct Row {
  const char* name;
  MetricType type;
  const char* help;
  std::vector<ClientMetric> (*values)(const Reading& now);
};

// A metric is read as what its family says it is.
ClientMetric valueOf(double value) {
  ClientMetric metric;
  metric.counter.value = value;
  metric.gauge.value = value;
  return metric;
}

template <typename Number>
std::vector<ClientMetric> single(Number value) {
  return {valueOf(static_cast<double>(value))};
}

ClientMetric labelled(const char* name, const std::string& text, double value) {
  ClientMetric metric = valueOf(value);
  metric.label.push_back({name, text});
  return metric;
}

std::vector<ClientMetric> picturesOf(const Reading& now) {
  std::vector<ClientMetric> metrics;
  for (const auto& [shows, count] : now.pictures) {
    metrics.push_back(labelled("shows", shows, static_cast<double>(count)));
  }
  return metrics;
}

std::vector<ClientMetric> cyclesOf(const Reading& now) {
  ClientMetric metric;
  ClientMetric::Histogram& histogram = metric.histogram;
  for (std::size_t group = 0; group < now.cycles.size(); ++group) {
    histogram.sample_count += now.cycles[group];
    histogram.bucket.push_back(
        {histogram.sample_count, group < ServiceHealth::kCycleLimits.size()
                                     ? Seconds(ServiceHealth::kCycleLimits[group]).count()
                                     : std::numeric_limits<double>::infinity()});
  }
  histogram.sample_sum = Seconds(now.cycleTime).count();
  return {metric};
}

// docs/operations.md shows what to make of them.
constexpr std::array<Row, 11> kRows{{
    {"productionrules_info", MetricType::Gauge, "1, with the version of the service",
     [](const Reading&) { return std::vector<ClientMetric>{labelled("version", PR_VERSION, 1)}; }},
    {"productionrules_mode", MetricType::Gauge, "1, with the framing mode",
     [](const Reading& now) { return std::vector<ClientMetric>{labelled("mode", now.mode, 1)}; }},
    {"productionrules_vision_results_total", MetricType::Counter, "Vision results handled",
     [](const Reading& now) { return single(now.results); }},
    {"productionrules_cycle_seconds", MetricType::Histogram, "Time that a vision result took to handle",
     cyclesOf},
    {"productionrules_waiting_messages", MetricType::Gauge, "Messages that wait to be handled",
     [](const Reading& now) { return single(now.waitingMessages); }},
    {"productionrules_dropped_messages_total", MetricType::Counter,
     "Messages dropped because they were too large or too many",
     [](const Reading& now) { return single(now.droppedMessages); }},
    {"productionrules_pictures_total", MetricType::Counter, "Pictures published, by what they show",
     picturesOf},
    {"productionrules_bus_connected", MetricType::Gauge, "Whether the bus is connected",
     [](const Reading& now) { return single(now.bus ? 1 : 0); }},
    {"productionrules_bus_connections_total", MetricType::Counter,
     "How often the bus was connected; all but the first are reconnections",
     [](const Reading& now) { return single(now.busConnections); }},
    {"productionrules_provider_connected", MetricType::Gauge, "Whether there is a camera provider",
     [](const Reading& now) { return single(now.provider ? 1 : 0); }},
    {"productionrules_provider_connections_total", MetricType::Counter,
     "How often a camera provider was found; all but the first are reconnections",
     [](const Reading& now) { return single(now.providerConnections); }},
}};

}  // namespace

ServiceMetrics::ServiceMetrics(std::shared_ptr<const ServiceHealth> health) : mHealth(std::move(health)) {}

std::vector<MetricFamily> ServiceMetrics::Collect() const {
  const Reading now = mHealth->read();
  std::vector<MetricFamily> families;
  families.reserve(kRows.size());
  for (const Row& row : kRows) {
    families.push_back({row.name, row.help, row.type, row.values(now)});
  }
  return families;
}

}  // namespace fyn::productionrules
