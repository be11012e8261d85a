#include "tools/replay/OutputCheck.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "platform/PubSub.h"
#include "platform/Topics.h"
#include "tools/recording/DecisionSentence.h"

namespace fyn::productionrules {

namespace {

using nlohmann::ordered_json;

/** What was published in answer to the last messages may have come after the end of a recording. */
constexpr std::int64_t kEndMs = 1000;

/** Members that depend on when a service was started and on the moment in which it reads its clock. */
constexpr std::array kOfTheClock{"timestamp", "sceneNumber", "t", "waitedMs"};

void dropClockMembers(ordered_json& value) {
  if (value.is_object()) {
    for (const char* const name : kOfTheClock) {
      value.erase(name);
    }
  }
  if (value.is_structured()) {
    for (ordered_json& inner : value) {
      dropClockMembers(inner);
    }
  }
}

std::string comparable(const std::string& payload) {
  ordered_json document = ordered_json::parse(payload, nullptr, false);
  if (!document.is_structured()) {
    return payload;
  }
  dropClockMembers(document);
  return document.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

const fyn::productionrules::Topic* knownTopic(const std::string& name) {
  const auto* const row =
      std::find_if(topics::kTable.begin(), topics::kTable.end(),
                   [&name](const auto& each) { return com::quil::pubsub::topicCovers(each.name, name); });
  return row != topics::kTable.end() ? &*row : nullptr;
}

}  // namespace

bool OutputCheck::isOutput(const std::string& topic) const {
  const auto* const row = knownTopic(topic);
  if (row == nullptr || row->direction == TopicDirection::in || topic == topics::kTimerDebug ||
      topic == topics::kDebugScene) {
    return false;
  }
  return std::none_of(mSubscribed.begin(), mSubscribed.end(), [&topic](const std::string& subscribed) {
    return com::quil::pubsub::topicCovers(subscribed, topic);
  });
}

void OutputCheck::add(Side Topic::*side, const std::string& topic, const std::string& payload,
                      std::int64_t t) {
  if (mDifference || !isOutput(topic)) {
    return;
  }
  Topic& both = mTopics[topic];
  std::string text = comparable(payload);
  if (text == (both.*side).last) {
    return;
  }
  (both.*side).last = text;
  (both.*side).waiting.push_back({t, std::move(text)});
  std::deque<Said>& recorded = both.recorded.waiting;
  std::deque<Said>& replayed = both.replayed.waiting;
  if (recorded.empty() || replayed.empty()) {
    return;
  }
  if (recorded.front().text != replayed.front().text) {
    mDifference = {
        std::min(recorded.front().t, replayed.front().t),
        topic + "\n  recorded: " + recorded.front().text + "\n  replayed: " + replayed.front().text};
    return;
  }
  recorded.pop_front();
  replayed.pop_front();
  ++mMatched;
}

void OutputCheck::expect(const RecordingEvent& event) {
  mEnd = event.t;
  if (const auto* const message = std::get_if<BusMessage>(&event.what)) {
    add(&Topic::recorded, message->topic, message->payload, event.t);
  }
}

void OutputCheck::onPublish(const std::string& topic, const std::string& payload) {
  add(&Topic::replayed, topic, payload, mNow());
}

std::optional<OutputCheck::Difference> OutputCheck::firstDifference() const {
  std::optional<Difference> first = mDifference;
  const auto note = [&first](std::int64_t t, std::string text) {
    if (!first || t < first->t) {
      first = {t, std::move(text)};
    }
  };
  for (const auto& [topic, both] : mTopics) {
    if (!both.recorded.waiting.empty()) {
      const Said& missing = both.recorded.waiting.front();
      note(missing.t, topic + "\n  recorded: " + missing.text + "\n  replayed: nothing");
    }
    // A topic that the recording does not hold was not recorded.
    if (!both.replayed.waiting.empty() && !both.recorded.last.empty() &&
        both.replayed.waiting.front().t <= mEnd - kEndMs) {
      const Said& added = both.replayed.waiting.front();
      note(added.t, topic + "\n  recorded: nothing\n  replayed: " + added.text);
    }
  }
  return first;
}

OutputCheck::Verdict OutputCheck::verdict() const {
  if (const std::optional<Difference> difference = firstDifference()) {
    return {false, "recording and replay differ from " + clockText(difference->t) + " on, after " +
                       std::to_string(mMatched) + " equal messages: " + difference->text};
  }
  if (mMatched == 0) {
    return {false,
            "the recording holds no messages of the service to compare with; prb record --outputs makes one"};
  }
  return {true, "all " + std::to_string(mMatched) + " messages of the service are the same in the replay"};
}

}  // namespace fyn::productionrules
