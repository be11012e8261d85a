#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "tools/report/Measurement.h"
#include "tools/report/RoomState.h"

namespace fyn::productionrules {

/**
 * Times how long what happens in the room waits for the picture that answers it. An event that the picture
 * on screen answers already, or that passes by itself, is none. All times in milliseconds.
 */
class EventMeter {
 public:
  /** Who was not seen for this long has joined when seen again. */
  static constexpr std::int64_t kAwayMs = 2000;
  /** Who was seen for less than this, such as a false detection, does not leave. */
  static constexpr std::int64_t kPresentMs = 2000;
  /** Who was silent for this long begins to speak when heard again. */
  static constexpr std::int64_t kSilenceMs = 1000;
  /** An event without an answer by then counts as unanswered. */
  static constexpr std::int64_t kAnswerMs = 30000;

  explicit EventMeter(Measurement& measurement) : mMeasurement(measurement) {}

  /** What a vision result at `t` shows of the room, against the pictures that stand before it. */
  void see(std::int64_t t, const RoomState& room);

  /** At `t` the streams `changed` have got a picture that looks different, the streams `decided` a new
   * layout, which may look the same; `room` is seen in the new pictures. */
  void change(std::int64_t t, const RoomState& room, const std::set<int>& changed,
              const std::set<int>& decided);

 private:
  using Waiting = std::optional<std::int64_t>;

  struct Known {
    std::int64_t firstSeen = 0;
    std::int64_t lastSeen = 0;
    std::optional<std::int64_t> lastSpoke;
    Waiting join;
    Waiting leave;
    Waiting speak;
    /** The streams that showed the person when last seen, and where. */
    std::vector<std::pair<int, Appearance>> shownBy;
  };

  struct Stream {
    /** Whom it has shown fully since its latest change. */
    std::set<std::int64_t> members;
    Waiting offCentre;
    /** Its subject has been in place since its latest change or event: only then it can leave its place. */
    bool wasInPlace = false;
  };

  /** What a vision result tells about a person. */
  void notice(std::int64_t t, const PersonState& person);
  void takePresent(std::int64_t t, const RoomState& room, const PersonState& person, bool changed);
  void takeAbsent(std::int64_t t, const RoomState& room, Known& known, const std::set<int>& renewed);
  void takeAll(std::int64_t t, const RoomState& room, const std::set<int>& changed,
               const std::set<int>& decided);
  void takeStream(std::int64_t t, const RoomState& room, std::size_t index, bool changed);
  /** Ends a wait: answered, passed by itself (neither), or too old. */
  void settle(std::int64_t t, RoomEvent kind, Waiting& waiting, bool isOver, bool changed);

  Measurement& mMeasurement;
  std::map<std::int64_t, Known> mPeople;
  std::map<int, Stream> mStreams;
  bool mHasStarted = false;
};

}  // namespace fyn::productionrules
