#include "tools/view/LiveRoom.h"

namespace fyn::productionrules {

namespace {

/** Bytes of a message that a page is not given: no real one comes near. */
constexpr std::size_t kTooLong = 1'000'000;

constexpr std::string_view kBusTag = "MqttPubSubClient";

}  // namespace

LiveRoom::LiveRoom(LineSink& sink, std::function<std::int64_t()> clock, ShadowSettings settings)
    : mSink(sink), mClock(std::move(clock)), mStart(mClock()), mShadow(sink, std::move(settings)) {}

void LiveRoom::onMessage(const std::string& topic, const std::string& message) {
  const MutexLock lock(mMutex);
  const std::int64_t t = mClock() - mStart;
  if (message.size() > kTooLong) {
    mSink.put(noticeLine(
        t, "a message of " + std::to_string(message.size()) + " bytes on " + topic + " was left out"));
  } else {
    mSink.put(messageLine(t, topic, message));
  }
  mShadow.take(t, topic, message);
}

void LiveRoom::write(LogPriority /*priority*/, const char* tag, const char* text) {
  // Lines of others may come from within onMessage, those of the bus client never do.
  if (tag == kBusTag) {
    const std::lock_guard lock(mMutex);
    mSink.put(noticeLine(mClock() - mStart, text));
  }
}

}  // namespace fyn::productionrules
