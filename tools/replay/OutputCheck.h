#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/recording/RecordingEvent.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules {

/**
 * Compares what a recording holds of a service's messages with what a replay publishes, topic by topic and in
 * order. What the time of day or the age of the service decides (timestamps, ticks, scene numbers) does not
 * count, nor how often the same is said again, nor the topics that only tell of running timers.
 */
class OutputCheck final : public ReplayObserver {
 public:
  /** `now` gives the milliseconds since the start of the recording. */
  explicit OutputCheck(std::function<std::int64_t()> now) : mNow(std::move(now)) {}

  /** Call it with every event, before the replay handles it. */
  void expect(const RecordingEvent& event);

  void onPublish(const std::string& topic, const std::string& payload) override;
  void onSubscribe(const std::string& topic) override { mSubscribed.push_back(topic); }

  /** What is found out when the replay has ended, as a person reads it. */
  struct Verdict {
    bool matches;
    std::string text;
  };
  Verdict verdict() const;

 private:
  struct Said {
    std::int64_t t;
    std::string text;
  };
  /** What one side has said on a topic and the other has not yet. */
  struct Side {
    std::deque<Said> waiting;
    std::string last;
  };
  struct Topic {
    Side recorded;
    Side replayed;
  };
  struct Difference {
    std::int64_t t;
    std::string text;
  };

  bool isOutput(const std::string& topic) const;
  void add(Side Topic::*side, const std::string& topic, const std::string& payload, std::int64_t t);
  std::optional<Difference> firstDifference() const;

  const std::function<std::int64_t()> mNow;
  std::vector<std::string> mSubscribed;
  std::map<std::string, Topic> mTopics;
  std::optional<Difference> mDifference;
  std::uint64_t mMatched = 0;
  std::int64_t mEnd = 0;
};

}  // namespace fyn::productionrules
