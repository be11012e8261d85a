#include "tools/view/ViewLine.h"

#include <array>
#include <string_view>

#include "platform/PubSub.h"
#include "platform/Topics.h"
#include "tools/recording/CompactPayload.h"
#include "tools/recording/DecisionSentence.h"
#include "tools/recording/RecordingWriter.h"

namespace fyn::productionrules {

namespace {

struct CurrentTopic {
  std::string_view topic;
  LineWorth worth;
};

/** Topics whose last message tells of now; each topic beneath one counts for itself. */
constexpr std::array kCurrentTopics{
    CurrentTopic{topics::kVisionResult, LineWorth::VisionResult},
    CurrentTopic{topics::kTimerDebug, LineWorth::Replaceable},
    CurrentTopic{topics::kScene, LineWorth::Kept},
    CurrentTopic{topics::kDebugScene, LineWorth::Kept},
    CurrentTopic{topics::kSecondaryScene, LineWorth::Kept},
    CurrentTopic{topics::kPeopleCount, LineWorth::Kept},
    CurrentTopic{topics::kTrackingMode, LineWorth::Kept},
    CurrentTopic{kStatusTopic, LineWorth::Kept},
    CurrentTopic{topics::kCamera, LineWorth::Kept},
    CurrentTopic{topics::kCameras, LineWorth::Kept},
    CurrentTopic{topics::kCameraParameters, LineWorth::Kept},
};

}  // namespace

ViewLine messageLine(std::int64_t t, const std::string& topic, const std::string& payload) {
  ViewLine line{t, LineWorth::Kept, {}, recordingLine({t, BusMessage{topic, payload}})};
  for (const CurrentTopic& row : kCurrentTopics) {
    if (com::quil::pubsub::topicCovers(row.topic, topic)) {
      line.worth = row.worth;
      line.key = topic;
    }
  }
  return line;
}

ViewLine decisionLine(std::int64_t t, const LayoutDecision& decision, const std::string& document) {
  return {t, LineWorth::Kept,
          "decision/" + std::to_string(decision.streamId) + '/' + decisionKindText(decision.kind),
          lineOfTime(t, [&](CompactText& text) {
            text.key("decision");
            writePayload(text, document);
            text.member("title", decisionTitle(decision));
            text.member("sentence", decisionSentence(decision));
          })};
}

ViewLine noticeLine(std::int64_t t, const std::string& words) {
  return {t, LineWorth::Kept, {}, lineOfTime(t, [&](CompactText& text) { text.member("notice", words); })};
}

}  // namespace fyn::productionrules
