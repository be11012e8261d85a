#include "tools/replay/EffectWriter.h"

#include <ostream>
#include <utility>

#include "platform/StderrLog.h"
#include "platform/Ticks.h"
#include "service/DecisionDocument.h"
#include "tools/recording/CompactPayload.h"

namespace fyn::productionrules {

EffectWriter::EffectWriter(std::ostream& output, std::function<std::int64_t()> now)
    : mOutput(output), mNow(std::move(now)) {}

template <typename WriteMembers>
void EffectWriter::write(WriteMembers&& writeMembers) {
  mOutput << lineOfTime(mNow(), writeMembers) << '\n';
}

void EffectWriter::onPublish(const std::string& topic, const std::string& payload) {
  write([&](CompactText& text) {
    text.member("topic", topic);
    text.key("payload");
    writePayload(text, payload);
  });
}

void EffectWriter::onScene(const std::string& json, bool /*delivered*/) {
  write([&](CompactText& text) {
    text.member("provider", "setSceneJson");
    text.key("payload");
    writePayload(text, json);
  });
}

void EffectWriter::onSubscribe(const std::string& topic) {
  write([&](CompactText& text) { text.member("subscribe", topic); });
}

void EffectWriter::onAdvertise(const std::string& topic) {
  write([&](CompactText& text) { text.member("advertise", topic); });
}

void EffectWriter::onLog(LogPriority priority, const char* tag, const char* words) {
  write([&](CompactText& text) {
    text.member("log", std::string(1, logPriorityLetter(priority)));
    text.member("tag", tag);
    text.member("text", words);
  });
}

void EffectWriter::onDecision(const LayoutDecision& decision) {
  write([&](CompactText& text) {
    text.key("decision");
    text.json(decisionDocument(GetTicks(), decision));
  });
}

}  // namespace fyn::productionrules
