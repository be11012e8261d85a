#include <nlohmann/json.hpp>

#include "tools/page/DataPage.h"
#include "tools/report/Metrics.h"
#include "tools/tune/TuneOutcome.h"

namespace fyn::productionrules {

namespace {

using Json = nlohmann::ordered_json;

// What a trade-off is between, in figures that people read.
constexpr const char* kMetrics[] = {"changes_per_minute", "latency_s", "in_view_percent"};

Json candidateAsJson(const TunedCandidate& candidate) {
  // What is not finite has no number in JSON and becomes null.
  Json document{{"values", candidateText(candidate.candidate)},
                {"goal", candidate.goal ? Json(*candidate.goal) : Json()},
                {"changes", candidate.tradeOff.changes},
                {"latency", candidate.tradeOff.latency},
                {"inView", candidate.tradeOff.inView}};
  for (const char* const name : kMetrics) {
    const std::optional<double> value = findMetric(name)->value(candidate.measurement);
    document["metrics"][name] = value ? Json(*value) : Json();
  }
  return document;
}

}  // namespace

void writeTunePage(std::ostream& out, const TuneOutcome& outcome, const std::string& goal) {
  Json data{{"page", "tune"}, {"goal", goal}};
  for (const char* const name : kMetrics) {
    data["names"].push_back(metricNames(*findMetric(name)));
  }
  data["candidates"] = Json::array();
  data["front"] = Json::array();
  const TunedCandidate* const first = outcome.candidates().data();
  for (const TunedCandidate& candidate : outcome.candidates()) {
    data["candidates"].push_back(candidateAsJson(candidate));
  }
  for (const TunedCandidate* const candidate : outcome.front()) {
    data["front"].push_back(candidate - first);
  }
  data["best"] = outcome.best() != nullptr ? Json(outcome.best() - first) : Json();
  writeDataPage(out, data);
}

}  // namespace fyn::productionrules
