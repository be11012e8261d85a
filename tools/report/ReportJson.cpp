#include "tools/report/ReportJson.h"

#include <nlohmann/json.hpp>

#include "tools/report/Comparison.h"
#include "tools/report/MetricDefinitions.h"
#include "tools/report/Metrics.h"
#include "tools/report/WaitTable.h"

namespace fyn::productionrules {

namespace {

using Json = nlohmann::ordered_json;

Json figuresAsJson(const Measurement& measurement, bool timing) {
  Json document{
      {"minutes", static_cast<double>(measurement.observedMs) / 60000},
      {"against", measuredAgainst(measurement)},
      {"visionResults", measurement.visionResults},
      {"layoutChanges", measurement.layoutChanges},
      {"reframes", measurement.reframes},
      {"flickers", measurement.flickers},
  };
  for (std::size_t kind = 0; kind < kRoomEventNames.size(); ++kind) {
    const Answers& answers = measurement.answers[kind];
    document["events"][kRoomEventNames[kind]] = {{"answered", answers.latency.total()},
                                                 {"unanswered", answers.unanswered}};
  }
  document["metrics"] = metricsAsJson(metrics(), measurement);
  document["waits"] = Json::array();
  for (const auto& [key, wait] : waitsByGain(measurement)) {
    document["waits"].push_back({{"key", key},
                                 {"ran_out", wait.ranOut},
                                 {"dropped", wait.dropped},
                                 {"running_s", static_cast<double>(wait.runningMs) / 1000},
                                 {"off_screen_s", static_cast<double>(wait.offScreenMs) / 1000}});
  }
  if (timing) {
    document["timing"] = metricsAsJson(timingMetrics(), measurement);
  }
  return document;
}

/** Times in milliseconds; the latency of an event that was not answered is -1. */
Json courseAsJson(const TimeLine& line) {
  Json document{{"length", line.length},
                {"bucketMs", TimeLine::kBucketMs},
                {"changes", Json::array()},
                {"events", Json::array()},
                {"buckets", Json::array()}};
  for (const TimeLine::Change& change : line.changes) {
    document["changes"].push_back({change.t, change.stream, framingTypeName(change.type), change.ofLayout});
  }
  for (const TimeLine::Event& event : line.events) {
    document["events"].push_back({event.t, static_cast<int>(event.kind), event.latency});
  }
  for (const PersonTime& bucket : line.buckets) {
    document["buckets"].push_back({bucket.inView, bucket.cut, bucket.off});
  }
  return document;
}

/** [[value, weight], ...] */
Json weightsAsJson(const Distribution& distribution) {
  Json rows = Json::array();
  for (const auto& [value, weight] : distribution.weights()) {
    rows.push_back({value, weight});
  }
  return rows;
}

/** In the units of Measurement. */
Json distributionsAsJson(const Measurement& all, bool timing) {
  Json document{{"headSize", weightsAsJson(all.headSize)},
                {"headRoom", weightsAsJson(all.headRoom)},
                {"thirds", weightsAsJson(all.thirds)},
                {"betweenChanges", weightsAsJson(all.betweenChanges)}};
  for (const Answers& answers : all.answers) {
    document["answers"].push_back(weightsAsJson(answers.latency));
  }
  if (timing) {
    document["decisionTime"] = weightsAsJson(all.decisionTime);
  }
  return document;
}

}  // namespace

Json reportAsJson(const std::vector<MeasuredRecording>& recordings, bool timing) {
  Json document;
  document["overall"] = figuresAsJson(overall(recordings), timing);
  document["recordings"] = Json::array();
  for (const MeasuredRecording& recording : recordings) {
    Json entry{{"recording", recording.name}};
    entry.update(figuresAsJson(recording.measurement, timing));
    document["recordings"].push_back(std::move(entry));
  }
  return document;
}

Json reportPageData(const std::vector<MeasuredRecording>& recordings, bool timing,
                    const ReportOrigin& origin) {
  Json document{{"page", "report"},
                {"version", origin.version},
                {"madeAt", origin.madeAt},
                {"isTooFew", recordings.size() < kFewestRecordings},
                {"definitions", metricDefinitions()},
                {"events", kRoomEventLabels}};
  for (const auto* const table : {&metrics(), &timingMetrics()}) {
    for (const Metric& metric : *table) {
      document["names"].push_back(metricNames(metric));
    }
  }
  document.update(reportAsJson(recordings, timing));
  document["distributions"] = distributionsAsJson(overall(recordings), timing);
  for (std::size_t index = 0; index < recordings.size(); ++index) {
    Json& entry = document["recordings"][index];
    entry["mode"] = recordings[index].mode;
    entry["settings"] = Json::object();
    for (const auto& [key, value] : recordings[index].settings) {
      entry["settings"][key] = value;
    }
    entry["course"] = courseAsJson(recordings[index].measurement.timeLine);
  }
  return document;
}

}  // namespace fyn::productionrules
