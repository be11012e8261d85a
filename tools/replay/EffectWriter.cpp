#include "tools/replay/EffectWriter.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "platform/StderrLog.h"
#include "tools/recording/CompactText.h"

namespace fyn::productionrules {

EffectWriter::EffectWriter(std::ostream& output, std::function<std::int64_t()> now)
    : mOutput(output), mNow(std::move(now)) {}

std::string& EffectWriter::line() {
  mLine.assign("{\"t\":").append(std::to_string(mNow()));
  return mLine;
}

void EffectWriter::writeLine() {
  mOutput << mLine << '\n';
}

void EffectWriter::onPublish(const std::string& topic, const std::string& payload) {
  appendJsonString(line().append(",\"topic\":"), topic);
  mLine.append(",\"payload\":").append(payloadAsJson(payload)).append("}");
  writeLine();
}

void EffectWriter::onScene(const std::string& json, bool /*delivered*/) {
  line().append(R"(,"provider":"setSceneJson","payload":)").append(payloadAsJson(json)).append("}");
  writeLine();
}

void EffectWriter::onSubscribe(const std::string& topic) {
  writeCall("subscribe", topic);
}

void EffectWriter::onAdvertise(const std::string& topic) {
  writeCall("advertise", topic);
}

void EffectWriter::writeCall(const char* key, const std::string& topic) {
  appendJsonString(line().append(",\"").append(key).append("\":"), topic);
  mLine.append("}");
  writeLine();
}

void EffectWriter::onLog(LogPriority priority, const char* tag, const char* text) {
  line().append(",\"log\":\"").append(1, logPriorityLetter(priority)).append("\",\"tag\":");
  appendJsonString(mLine, tag);
  appendJsonString(mLine.append(",\"text\":"), text);
  mLine.append("}");
  writeLine();
}

void EffectWriter::onDecision(const LayoutDecision& decision) {
  line().append(",\"decision\":").append(decisionJson(decision)).append("}");
  writeLine();
}

std::string decisionJson(const LayoutDecision& decision) {
  nlohmann::ordered_json json{{"kind", decisionKindText(decision.kind)},
                              {"stream", decision.streamId},
                              {"from", layoutToText(decision.from)},
                              {"to", layoutToText(decision.to)}};
  if (decision.difference != LayoutDifference::None) {
    json["differs"] = layoutDifferenceText(decision.difference);
  }
  if (*decision.reason != '\0') {
    json["reason"] = decision.reason;
  }
  if (*decision.timer != '\0') {
    json["timer"] = decision.timer;
  }
  json["waitMs"] = decision.waitMs;
  json["waitedMs"] = decision.waitedMs;
  if (decision.frameIndex >= 0) {
    json["frame"] = decision.frameIndex;
    json["headPosition"] = headPositionText(decision.headPosition);
  }
  return json.dump();
}

}  // namespace fyn::productionrules
