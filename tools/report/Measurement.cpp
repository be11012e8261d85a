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
  visit("truthMs", measured.truthMs...);
  visit("layoutChanges", measured.layoutChanges...);
  visit("reframes", measured.reframes...);
  visit("flickers", measured.flickers...);
  visit("betweenChanges", measured.betweenChanges...);
  visit("shotLength", measured.shotLength...);
  visit("thereAndBacks", measured.thereAndBacks...);
  visit("tileHops", measured.tileHops...);
  visit("inViewMs", measured.personTime.inView...);
  visit("cutMs", measured.personTime.cut...);
  visit("offMs", measured.personTime.off...);
  visit("occupiedMs", measured.occupiedMs...);
  visit("everybodyMs", measured.everybodyMs...);
  visit("neverShownMs", measured.neverShownMs...);
  visit("personsNeverShown", measured.personsNeverShown...);
  visit("nobodyInItMs", measured.nobodyInItMs...);
  visit("headCutMs", measured.headCutMs...);
  visit("shownTwiceMs", measured.shownTwiceMs...);
  visit("distortedMs", measured.distortedMs...);
  visit("subjectMs", measured.subjectMs...);
  visit("subjectWholeMs", measured.subjectWholeMs...);
  visit("headSize", measured.headSize...);
  visit("headRoom", measured.headRoom...);
  visit("thirds", measured.thirds...);
  visit("speakingMs", measured.speakingMs...);
  visit("speakerFramedMs", measured.speakerFramedMs...);
  visit("speakerInViewMs", measured.speakerInViewMs...);
  visit("turnMs", measured.turnMs...);
  visit("turnSingledOutMs", measured.turnSingledOutMs...);
  visit("turnCloseMs", measured.turnCloseMs...);
  visit("turnToFramed", measured.turnToFramed...);
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

}  // namespace

void Measurement::merge(const Measurement& other) {
  forEachFigure([](const auto& /*name*/, auto& sum, const auto& more) { add(sum, more); }, *this, other);
  for (const auto& [key, more] : other.waits) {
    WaitFigures& sum = waits[key];
    sum.ranOut += more.ranOut;
    sum.dropped += more.dropped;
    sum.runningMs += more.runningMs;
    sum.offScreenMs += more.offScreenMs;
  }
}

json measurementAsJson(const Measurement& measurement) {
  json document;
  forEachFigure([&document](const auto& name, const auto& member) { document[name] = member; }, measurement);
  return document;
}

Measurement measurementOf(const json& document) {
  Measurement measurement;
  forEachFigure([&document](const auto& name, auto& member) { document.at(name).get_to(member); },
                measurement);
  return measurement;
}

}  // namespace fyn::productionrules
