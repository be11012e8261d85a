#include <nlohmann/json.hpp>

#include "layouts/cycle/LayoutDecision.h"
#include "tools/recording/DecisionSentence.h"
#include "tools/report/Metrics.h"
#include "tools/why/WhyText.h"

namespace fyn::productionrules {

namespace {

using Json = nlohmann::ordered_json;

const char* fateName(const AskedPerson& person) {
  if (!person.stage) {
    return "unknown";
  }
  switch (person.stage->fate) {
    case PersonFate::NotThere:
      return "notThere";
    case PersonFate::NotDetected:
      return "notDetected";
    case PersonFate::OffScreen:
      return "offScreen";
    case PersonFate::Cut:
      return "cut";
    case PersonFate::Shown:
      return "shown";
  }
  return "";
}

Json personAsJson(const AskedPerson& person) {
  Json entry{{"id", person.id}, {"fate", fateName(person)}};
  if (person.stage) {
    entry["since"] = person.stage->since;
  }
  if (person.seenAgain) {
    entry["seenAgain"] = *person.seenAgain;
  }
  return entry;
}

Json decisionAsJson(std::int64_t t, const LayoutDecision& decision) {
  Json entry{{"t", t},
             {"stream", decision.streamId},
             {"kind", decisionKindText(decision.kind)},
             {"text", decisionSentence(decision)}};
  if (!decision.key.empty()) {
    entry["key"] = decision.key;
    entry["configuredMs"] = decision.configuredMs;
    entry["waitMs"] = decision.waitMs;
  }
  return entry;
}

Json remedyAsJson(const KeyChange& change) {
  return {{"key", change.key->key}, {"from", change.from}, {"to", change.to}};
}

Json priceAsJson(const WhyAnswer& answer) {
  Json price = Json::object();
  const Json before = metricsAsJson(metrics(), answer.before);
  const Json after = metricsAsJson(metrics(), *answer.after);
  for (const auto& [name, value] : before.items()) {
    price[name] = {{"before", value}, {"after", after.at(name)}};
  }
  return price;
}

}  // namespace

Json whyAsJson(const WhyAnswer& answer) {
  Json document{{"recording", answer.recording}, {"t", answer.t},
                {"mode", answer.mode},           {"pictures", Json::array()},
                {"persons", Json::array()},      {"waits", Json::array()},
                {"searched", answer.isSearched}, {"remedies", Json::array()}};
  for (const ShownPicture& picture : answer.pictures) {
    document["pictures"].push_back({{"stream", picture.stream},
                                    {"type", framingTypeName(picture.type)},
                                    {"since", picture.since},
                                    {"shows", picture.people}});
  }
  for (const AskedPerson& person : answer.persons) {
    document["persons"].push_back(personAsJson(person));
  }
  if (answer.change) {
    document["change"] = decisionAsJson(answer.change->t, answer.change->decision);
  }
  for (const OpenWait& wait : answer.waits) {
    document["waits"].push_back(decisionAsJson(wait.since, wait.decision));
  }
  for (const KeyChange& change : answer.remedies) {
    document["remedies"].push_back(remedyAsJson(change));
  }
  if (answer.after) {
    document["price"] = priceAsJson(answer);
  }
  return document;
}

}  // namespace fyn::productionrules
