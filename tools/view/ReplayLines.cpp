#include "tools/view/ReplayLines.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/ServiceStateScope.h"
#include "platform/Topics.h"
#include "tools/recording/RecordingWriter.h"

namespace fyn::productionrules {

namespace {

/** What only the service itself sends: in a recording it tells of another run than the one shown. */
constexpr std::array kOwnTopics{topics::kScene, topics::kDebugScene, topics::kTimerDebug,
                                topics::kPeopleCount, topics::kDecisions};

}  // namespace

ReplayLines::ReplayLines(LineSink& sink, std::int64_t start)
    : mSink(sink), mStart(start), mLast(start), mEngine(sink, [this] { return now(); }) {}

// The service begins with the recording's first message, at the time of its first line.
std::int64_t ReplayLines::now() {
  mLast = std::max(mLast, mStart + mReplay->now());
  return mLast;
}

void ReplayLines::handle(const RecordingEvent& event) {
  if (!std::holds_alternative<Truth>(event.what) && !isOfTheDevice(event)) {
    mLast = std::max(mLast, mStart + event.t);
    if (const auto* const message = std::get_if<BusMessage>(&event.what)) {
      mSink.put(messageLine(mLast, message->topic, message->payload));
    } else {
      mSink.put({mLast, LineWorth::Kept, {}, recordingLine({mLast, event.what})});
    }
  }
  mReplay->handle(event);
  if (mReplay->service() != nullptr) {
    const ServiceStateScope scope(mReplay->state());
    mEngine.look(*mReplay->service());
  }
}

void ReplayLines::finish() {
  mReplay->finish();
}

void ReplayLines::onPublish(const std::string& topic, const std::string& payload) {
  mSink.put(messageLine(now(), topic, payload));
}

bool ReplayLines::isOfTheDevice(const RecordingEvent& event) {
  const auto* const message = std::get_if<BusMessage>(&event.what);
  if (message == nullptr ||
      std::find(kOwnTopics.begin(), kOwnTopics.end(), message->topic) == kOwnTopics.end()) {
    return false;
  }
  if (!std::exchange(mSaidWhatIsLeftOut, true)) {
    notice(
        "the recording holds what the device itself decided; what is shown are the decisions of this replay");
  }
  return true;
}

}  // namespace fyn::productionrules
