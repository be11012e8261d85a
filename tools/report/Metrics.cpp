#include "tools/report/Metrics.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace fyn::productionrules {

namespace {

using Value = std::optional<double>;

constexpr double kMsPerSecond = 1000;
constexpr double kMsPerMinute = 60000;
constexpr int kMedian = 50;
constexpr int kHigh = 95;

Value ratio(std::int64_t part, std::int64_t whole, double factor) {
  if (whole <= 0) {
    return std::nullopt;
  }
  return static_cast<double>(part) * factor / static_cast<double>(whole);
}

Value divided(std::optional<std::int64_t> value, double by) {
  return value ? Value(static_cast<double>(*value) / by) : std::nullopt;
}

Value perMinute(std::int64_t count, const Measurement& m) {
  return ratio(count, m.streamMs, kMsPerMinute);
}

Value percentile(const Distribution& distribution, int percent, double by) {
  return divided(distribution.percentile(percent), by);
}

Value shortShotsPercent(const Measurement& m) {
  constexpr std::int64_t kShortMs = 2000;
  return ratio(m.shotLength.totalBelow(kShortMs), m.shotLength.total(), 100);
}

/** The answers to all kinds of events. */
Answers allAnswers(const Measurement& m) {
  Answers all;
  for (const Answers& answers : m.answers) {
    all.latency.merge(answers.latency);
    all.unanswered += answers.unanswered;
  }
  return all;
}

Value unansweredPercent(const Measurement& m) {
  const Answers all = allAnswers(m);
  return ratio(all.unanswered, all.unanswered + all.latency.total(), 100);
}

template <RoomEvent kEvent, int kPercent>
Value latency(const Measurement& m) {
  return percentile(m.answersTo(kEvent).latency, kPercent, kMsPerSecond);
}

}  // namespace

const std::vector<Metric>& metrics() {
  using M = const Measurement&;
  static const std::vector<Metric> table{
      {"layout_changes_per_minute", "Layout changes", "per min", 2, Better::Lower,
       [](M m) { return perMinute(m.layoutChanges, m); }},
      {"reframes_per_minute", "Reframes", "per min", 2, Better::Lower,
       [](M m) { return perMinute(m.reframes, m); }},
      {"changes_per_minute", "All changes", "per min", 2, Better::Lower,
       [](M m) { return perMinute(m.layoutChanges + m.reframes, m); }},
      {"between_changes_s", "Between changes, median", "s", 1, Better::Higher,
       [](M m) { return percentile(m.betweenChanges, kMedian, kMsPerSecond); }},
      {"shortest_between_changes_s", "Between changes, shortest", "s", 1, Better::Higher,
       [](M m) { return divided(m.betweenChanges.smallest(), kMsPerSecond); }},
      {"flickers_per_minute", "Flicker", "per min", 2, Better::Lower,
       [](M m) { return perMinute(m.flickers, m); }},
      {"short_shots_percent", "Shots of less than 2 s", "%", 1, Better::Lower, shortShotsPercent},
      {"there_and_back_per_minute", "Cuts there and back", "per min", 2, Better::Lower,
       [](M m) { return perMinute(m.thereAndBacks, m); }},
      {"tile_hops_per_minute", "Hops to another tile", "per min", 2, Better::Lower,
       [](M m) { return perMinute(m.tileHops, m); }},
      {"in_view_percent", "Person-time fully in view", "%", 1, Better::Higher,
       [](M m) { return ratio(m.personTime.inView, m.personTime.total(), 100); }},
      {"cut_percent", "Person-time partly cut", "%", 1, Better::Lower,
       [](M m) { return ratio(m.personTime.cut, m.personTime.total(), 100); }},
      {"off_screen_percent", "Person-time off screen", "%", 1, Better::Lower,
       [](M m) { return ratio(m.personTime.off, m.personTime.total(), 100); }},
      {"never_shown_percent", "Person-time of stays never shown", "%", 1, Better::Lower,
       [](M m) { return ratio(m.neverShownMs, m.personTime.total(), 100); }},
      {"never_shown_persons", "People never shown", "persons", 0, Better::Lower,
       [](M m) { return m.personTime.total() > 0 ? Value(m.personsNeverShown) : std::nullopt; }},
      {"everybody_in_view_percent", "Time with everybody fully in view", "%", 1, Better::Higher,
       [](M m) { return ratio(m.everybodyMs, m.occupiedMs, 100); }},
      {"nobody_in_it_percent", "Time with nobody in a tile or picture", "%", 1, Better::Lower,
       [](M m) { return ratio(m.nobodyInItMs, m.occupiedMs, 100); }},
      {"head_cut_percent", "Time with a head cut by a tile's border", "%", 1, Better::Lower,
       [](M m) { return ratio(m.headCutMs, m.occupiedMs, 100); }},
      {"shown_twice_percent", "Time with somebody shown twice", "%", 2, Better::Lower,
       [](M m) { return ratio(m.shownTwiceMs, m.occupiedMs, 100); }},
      {"distorted_percent", "Time with a distorted picture", "%", 1, Better::Lower,
       [](M m) { return ratio(m.distortedMs, m.observedMs, 100); }},
      {"subject_in_view_percent", "Fully in view of the own frame", "%", 1, Better::Higher,
       [](M m) { return ratio(m.subjectWholeMs, m.subjectMs, 100); }},
      {"head_size_percent", "Head size, median", "% of height", 1, Better::Higher,
       [](M m) { return percentile(m.headSize, kMedian, 10); }},
      {"smallest_head_percent", "Head size, smallest", "% of height", 1, Better::Higher,
       [](M m) { return divided(m.headSize.smallest(), 10); }},
      {"head_room_percent", "Head room, median", "% of frame", 1, Better::Neither,
       [](M m) { return percentile(m.headRoom, kMedian, 10); }},
      {"thirds_deviation_percent", "Off the rule of thirds, median", "% of frame", 1, Better::Lower,
       [](M m) { return percentile(m.thirds, kMedian, 10); }},
      {"latency_s", "Answer to any event, median", "s", 1, Better::Lower,
       [](M m) { return percentile(allAnswers(m).latency, kMedian, kMsPerSecond); }},
      {"latency_p95_s", "Answer to any event, 95th percentile", "s", 1, Better::Lower,
       [](M m) { return percentile(allAnswers(m).latency, kHigh, kMsPerSecond); }},
      {"join_latency_s", "Answer to a join, median", "s", 1, Better::Lower,
       latency<RoomEvent::Join, kMedian>},
      {"join_latency_p95_s", "Answer to a join, 95th percentile", "s", 1, Better::Lower,
       latency<RoomEvent::Join, kHigh>},
      {"leave_latency_s", "Answer to a leave, median", "s", 1, Better::Lower,
       latency<RoomEvent::Leave, kMedian>},
      {"leave_latency_p95_s", "Answer to a leave, 95th percentile", "s", 1, Better::Lower,
       latency<RoomEvent::Leave, kHigh>},
      {"off_centre_latency_s", "Answer to a move off centre, median", "s", 1, Better::Lower,
       latency<RoomEvent::OffCentre, kMedian>},
      {"off_centre_latency_p95_s", "Answer to a move off centre, 95th percentile", "s", 1, Better::Lower,
       latency<RoomEvent::OffCentre, kHigh>},
      {"speak_latency_s", "Answer to a new speaker, median", "s", 1, Better::Lower,
       latency<RoomEvent::Speak, kMedian>},
      {"speak_latency_p95_s", "Answer to a new speaker, 95th percentile", "s", 1, Better::Lower,
       latency<RoomEvent::Speak, kHigh>},
      {"unanswered_percent", "Events without an answer", "%", 1, Better::Lower, unansweredPercent},
      {"speaker_in_view_percent", "Speaking time with the speaker in view", "%", 1, Better::Higher,
       [](M m) { return ratio(m.speakerInViewMs, m.speakingMs, 100); }},
      {"speaker_framed_percent", "Speaking time with the speaker framed", "%", 1, Better::Higher,
       [](M m) { return ratio(m.speakerFramedMs, m.speakingMs, 100); }},
      {"singled_out_percent", "Turns with the speaker singled out", "%", 1, Better::Higher,
       [](M m) { return ratio(m.turnSingledOutMs, m.turnMs, 100); }},
      {"close_percent", "Turns with the speaker close", "%", 1, Better::Higher,
       [](M m) { return ratio(m.turnCloseMs, m.turnMs, 100); }},
      {"switch_s", "Turn to the switch, median", "s", 1, Better::Lower,
       [](M m) { return percentile(m.turnToFramed, kMedian, kMsPerSecond); }},
      {"switch_p95_s", "Turn to the switch, 95th percentile", "s", 1, Better::Lower,
       [](M m) { return percentile(m.turnToFramed, kHigh, kMsPerSecond); }},
  };
  return table;
}

const std::vector<Metric>& timingMetrics() {
  using M = const Measurement&;
  constexpr double kTenths = 10;
  static const std::vector<Metric> table{
      {"decision_us", "Decision time, median", "us", 1, Better::Lower,
       [](M m) { return percentile(m.decisionTime, kMedian, kTenths); }},
      {"decision_p95_us", "Decision time, 95th percentile", "us", 1, Better::Lower,
       [](M m) { return percentile(m.decisionTime, kHigh, kTenths); }},
  };
  return table;
}

const Metric* findMetric(std::string_view name) {
  for (const Metric& metric : metrics()) {
    if (name == metric.name) {
      return &metric;
    }
  }
  return nullptr;
}

std::string metricText(const Metric& metric, std::optional<double> value) {
  if (!value || !std::isfinite(*value)) {
    return "-";
  }
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f", metric.digits, *value);
  return text.data();
}

nlohmann::ordered_json metricsAsJson(const std::vector<Metric>& table, const Measurement& measurement) {
  nlohmann::ordered_json document = nlohmann::ordered_json::object();
  for (const Metric& metric : table) {
    const Value value = metric.value(measurement);
    document[metric.name] = value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
  }
  return document;
}

std::string measuredAgainst(const Measurement& measurement) {
  if (measurement.truthMs == 0) {
    return "the vision results";
  }
  if (measurement.truthMs == measurement.observedMs) {
    return "the truth";
  }
  return "the truth where a recording tells it, else the vision results";
}

nlohmann::ordered_json metricNames(const Metric& metric) {
  return {{"name", metric.name}, {"label", metric.label}, {"unit", metric.unit}, {"digits", metric.digits}};
}

}  // namespace fyn::productionrules
