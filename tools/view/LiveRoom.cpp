#include "tools/view/LiveRoom.h"

#include <optional>
#include <utility>

#include "service/DecisionDocument.h"

namespace fyn::productionrules {

namespace {

/** Bytes of a message that a page is not given: no real one comes near. */
constexpr std::size_t kTooLong = 1'000'000;

constexpr std::string_view kBusTag = "MqttPubSubClient";

}  // namespace

LiveRoom::LiveRoom(LineSink& sink, std::function<std::int64_t()> clock)
    : mSink(sink), mClock(std::move(clock)), mStart(mClock()) {}

void LiveRoom::onMessage(const std::string& topic, const std::string& message) {
  const MutexLock lock(mMutex);
  mSink.put(lineOf(mClock() - mStart, topic, message));
}

ViewLine LiveRoom::lineOf(std::int64_t t, const std::string& topic, const std::string& message) const {
  if (message.size() > kTooLong) {
    return noticeLine(
        t, "a message of " + std::to_string(message.size()) + " bytes on " + topic + " was left out");
  }
  const std::optional<LayoutDecision> decision =
      topic == topics::kDecisions ? readDecision(message) : std::nullopt;
  return decision ? decisionLine(t, *decision, message) : messageLine(t, topic, message);
}

void LiveRoom::write(LogPriority /*priority*/, const char* tag, const char* text) {
  // Lines of others may come from within onMessage, those of the bus client never do.
  if (tag == kBusTag) {
    const MutexLock lock(mMutex);
    mSink.put(noticeLine(mClock() - mStart, text));
  }
}

}  // namespace fyn::productionrules
