#include "tools/report/Measurement.h"

#include <nlohmann/json.hpp>

namespace fyn::productionrules {

namespace {

using nlohmann::json;

/** The one list of what a measurement adds up: `visit(name, members...)`, a member of each measurement. */
template <typename Visitor, typename... Measured>
void forEachFigure(Visitor&& visit, Measured&... measured) {
  visit("visionResults", measured.visionResults...);
  visit("observedMs", measured.observedMs...);
  visit("streamMs", measured.streamMs...);
  visit("layoutChanges", measured.layoutChanges...);
  visit("reframes", measured.reframes...);
  visit("flickers", measured.flickers...);
  visit("betweenChanges", measured.betweenChanges...);
  visit("inViewMs", measured.personTime.inView...);
  visit("cutMs", measured.personTime.cut...);
  visit("offMs", measured.personTime.off...);
  visit("occupiedMs", measured.occupiedMs...);
  visit("everybodyMs", measured.everybodyMs...);
  visit("subjectMs", measured.subjectMs...);
  visit("subjectWholeMs", measured.subjectWholeMs...);
  visit("headSize", measured.headSize...);
  visit("headRoom", measured.headRoom...);
  visit("thirds", measured.thirds...);
  visit("speakingMs", measured.speakingMs...);
  visit("speakerFramedMs", measured.speakerFramedMs...);
  visit("decisionTime", measured.decisionTime...);
  for (std::size_t kind = 0; kind < kRoomEventNames.size(); ++kind) {
    const std::string name = kRoomEventNames[kind];
    visit(name + "Latency", measured.answers[kind].latency...);
    visit(name + "Unanswered", measured.answers[kind].unanswered...);
  }
}

void add(std::int64_t& sum, std::int64_t more) {
  sum += more;
}
void add(Distribution& sum, const Distribution& more) {
  sum.merge(more);
}

json timeLineAsJson(const TimeLine& line) {
  json document{{"length", line.length}, {"changes", json::array()}, {"events", json::array()}};
  for (const TimeLine::Change& change : line.changes) {
    document["changes"].push_back(
        {change.t, change.stream, static_cast<int>(change.type), change.ofLayout ? 1 : 0});
  }
  for (const TimeLine::Event& event : line.events) {
    document["events"].push_back({event.t, static_cast<int>(event.kind), event.latency});
  }
  json& buckets = document["buckets"] = json::array();
  for (const PersonTime& bucket : line.buckets) {
    buckets.push_back({bucket.inView, bucket.cut, bucket.off});
  }
  return document;
}

TimeLine timeLineOf(const json& document) {
  TimeLine line;
  line.length = document.at("length").get<std::int64_t>();
  for (const json& row : document.at("changes")) {
    line.changes.push_back({row.at(0).get<std::int64_t>(), row.at(1).get<int>(),
                            static_cast<FramingType>(row.at(2).get<int>()), row.at(3).get<int>() != 0});
  }
  for (const json& row : document.at("events")) {
    line.events.push_back({row.at(0).get<std::int64_t>(), static_cast<RoomEvent>(row.at(1).get<int>()),
                           row.at(2).get<std::int64_t>()});
  }
  for (const json& row : document.at("buckets")) {
    line.buckets.push_back(
        {row.at(0).get<std::int64_t>(), row.at(1).get<std::int64_t>(), row.at(2).get<std::int64_t>()});
  }
  return line;
}

}  // namespace

void Measurement::merge(const Measurement& other) {
  forEachFigure([](const auto& /*name*/, auto& sum, const auto& more) { add(sum, more); }, *this, other);
}

json measurementAsJson(const Measurement& measurement, MeasurementParts parts) {
  json document;
  forEachFigure([&document](const auto& name, const auto& member) { document[name] = member; }, measurement);
  if (parts == MeasurementParts::FiguresAndTimeLine) {
    document["timeLine"] = timeLineAsJson(measurement.timeLine);
  }
  return document;
}

Measurement measurementOf(const json& document) {
  Measurement measurement;
  forEachFigure([&document](const auto& name, auto& member) { document.at(name).get_to(member); },
                measurement);
  if (const auto line = document.find("timeLine"); line != document.end()) {
    measurement.timeLine = timeLineOf(*line);
  }
  return measurement;
}

}  // namespace fyn::productionrules
