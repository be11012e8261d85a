// The published contract in api/ names what the code names, no more and no less.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "layouts/cycle/LayoutDecision.h"
#include "model/HeadKeys.h"
#include "platform/PubSub.h"
#include "platform/Topics.h"
#if PR_HAVE_MQTT
#include "platform/linux/mqtt/MqttStatus.h"
#include "tests/testing/Folders.h"
#endif

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;
using Texts = std::set<std::string>;

json contract(const std::string& file) {
  std::ifstream input(sourceFolder() + "/api/" + file);
  return json::parse(input);
}

/** The texts of an enumeration's values from `first` to `last`. */
template <typename Enum, typename Text>
Texts texts(Enum first, Enum last, Text text) {
  Texts found;
  for (int value = static_cast<int>(first); value <= static_cast<int>(last); ++value) {
    found.insert(text(static_cast<Enum>(value)));
  }
  return found;
}

Texts keys(const json& object) {
  Texts found;
  for (const auto& member : object.items()) {
    found.insert(member.key());
  }
  return found;
}

TEST(Contract, HasTheTextsOfTheCode) {
  const Texts framingTypes = texts(FramingType::HEAD, FramingType::NONE, framingTypeName);
  Texts shown = framingTypes;
  shown.erase("NONE");
  struct Row {
    const char* file;
    const char* place;
    Texts expected;
  };
  const Row rows[] = {
      {"types", "/$defs/framingMode/enum",
       texts(FramingMode::Off, FramingMode::MultiStream, framingModeToString)},
      {"types", "/$defs/framingType/enum", framingTypes},
      {"types", "/$defs/layoutType/enum", texts(FramingType::HEAD, FramingType::NONE, layoutToString)},
      {"types", "/$defs/frameLayout/enum", texts(kFrameLayoutHeadSingle, kFrameLayoutNone, frameLayoutName)},
      {"types", "/$defs/headPosition/enum",
       texts(HeadPosition::HEAD_ON_EDGE, HeadPosition::CENTER, headPositionInString)},
      {"decision", "/$defs/shown/enum", shown},
      {"decision", "/properties/kind/enum",
       texts(DecisionKind::Pending, DecisionKind::Reset, decisionKindText)},
      {"decision", "/properties/difference/enum",
       texts(LayoutDifference::FirstPicture, LayoutDifference::People, layoutDifferenceText)},
      {"control",
       "/enum",
       {std::string(control::kConfigChange), std::string(control::kResetLayouts),
        std::string(control::kDumpDebug)}},
  };
  for (const Row& row : rows) {
    const json schema = contract(std::string("schemas/") + row.file + ".json");
    EXPECT_EQ(schema.at(json::json_pointer(row.place)).get<Texts>(), row.expected) << row.file << row.place;
  }
  EXPECT_EQ(keys(contract("schemas/vision-result.json").at("/$defs/head/properties"_json_pointer)),
            Texts(kHeadKeys.begin(), kHeadKeys.end()));
}

struct Operation {
  std::string address;
  bool isReceived;
  int qos;
  bool retain;
};

std::vector<Operation> operations() {
  const json document = contract("asyncapi.json");
  std::vector<Operation> found;
  for (const json& operation : document.at("operations")) {
    const std::string channel = operation.at("channel").at("$ref").get<std::string>().substr(1);
    const json& mqtt = operation.at("bindings").at("mqtt");
    found.push_back({document.at(json::json_pointer(channel)).at("address"),
                     operation.at("action") == "receive", mqtt.at("qos"), mqtt.at("retain")});
  }
  return found;
}

/** The row that says most of a topic. */
const Topic& rowOf(const std::string& address) {
  const Topic* best = nullptr;
  for (const Topic& topic : topics::kTable) {
    if (com::quil::pubsub::topicCovers(topic.name, address) &&
        (best == nullptr || topic.name.size() > best->name.size())) {
      best = &topic;
    }
  }
  if (best == nullptr) {
    throw std::out_of_range(address);
  }
  return *best;
}

TEST(Contract, HasTheTopicsOfTheCode) {
  std::set<std::pair<std::string, bool>> received;
  for (const Operation& operation : operations()) {
    if (operation.address == "/PRBStatus") {
      continue;  // of the broker's client alone
    }
    const Topic& row = rowOf(operation.address);
    received.emplace(row.name, operation.isReceived);
    EXPECT_EQ(operation.qos, row.qos) << operation.address;
    EXPECT_EQ(operation.retain, row.retain) << operation.address;
  }
  std::set<std::pair<std::string, bool>> expected;
  for (const Topic& topic : topics::kTable) {
    if (topic.name == topics::kDebugLog) {
      continue;  // stands for those beneath it
    }
    if (topic.direction != TopicDirection::out) {
      expected.emplace(topic.name, true);
    }
    if (topic.direction != TopicDirection::in) {
      expected.emplace(topic.name, false);
    }
  }
  EXPECT_EQ(received, expected);
}

#if PR_HAVE_MQTT
TEST(Contract, HasTheMembersOfTheStatus) {
  const json schema = contract("schemas/status.json");
  MqttStatus status(std::make_shared<ServiceHealth>());
  const Texts said = keys(json::parse(status.due(MqttStatus::TimePoint{std::chrono::hours(1)}).value_or("")));
  EXPECT_EQ(keys(schema.at("/$defs/up/properties"_json_pointer)), said);
  EXPECT_EQ(schema.at("/$defs/up/required"_json_pointer).get<Texts>(), said);
  const Texts gone{json::parse(MqttStatus::kDown).at("state"), json::parse(MqttStatus::kLost).at("state")};
  EXPECT_EQ(schema.at("/$defs/gone/properties/state/enum"_json_pointer).get<Texts>(), gone);
}
#endif

}  // namespace
}  // namespace fyn::productionrules::testing
