#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "model/Enums.h"
#include "tools/report/Distribution.h"

namespace fyn::productionrules {

/** What happens in the room and asks for another picture. */
enum class RoomEvent { Join, Leave, OffCentre, Speak };

inline constexpr std::array<const char*, 4> kRoomEventNames{"join", "leave", "off_centre", "speak"};
inline constexpr std::array<const char*, 4> kRoomEventLabels{"join", "leave", "off centre", "speak"};

/** How the events of one kind were answered. */
struct Answers {
  /** From the event to the picture that answers it, in milliseconds. */
  Distribution latency;
  /** Events that no picture answered in time. */
  std::int64_t unanswered = 0;
};

/** Person-time by how much of the head is on screen, in milliseconds. */
struct PersonTime {
  std::int64_t inView = 0;
  std::int64_t cut = 0;
  std::int64_t off = 0;

  std::int64_t total() const { return inView + cut + off; }
};

/** What the waits of one configuration key did. */
struct WaitFigures {
  std::int64_t ranOut = 0;
  /** Ended before: the scene went back, or became another one. */
  std::int64_t dropped = 0;
  /** Time in which one or more of them ran, and as much of it as somebody was off screen. */
  std::int64_t runningMs = 0;
  std::int64_t offScreenMs = 0;
};

/** The course of one recording, for plots. Times in milliseconds. */
struct TimeLine {
  struct Change {
    std::int64_t t = 0;
    int stream = 0;
    FramingType type = FramingType::NONE;
    /** A change of layout; else a reframe. */
    bool ofLayout = true;
  };
  struct Event {
    std::int64_t t = 0;
    RoomEvent kind = RoomEvent::Join;
    /** -1 for one that was not answered in time. */
    std::int64_t latency = -1;
  };
  static constexpr std::int64_t kBucketMs = 1000;

  std::int64_t length = 0;
  /** The first picture of each stream and every change. */
  std::vector<Change> changes;
  std::vector<Event> events;
  /** One entry per kBucketMs. */
  std::vector<PersonTime> buckets;
};

/** Everything that is counted while a recording is replayed; the metrics are computed from it. Sizes are in
 * tenths of a per cent. */
struct Measurement {
  std::int64_t visionResults = 0;
  /** Time with vision results, and the same summed over the output streams that showed a picture. */
  std::int64_t observedMs = 0;
  std::int64_t streamMs = 0;
  /** As much of observedMs as was measured against the truth. */
  std::int64_t truthMs = 0;
  std::int64_t layoutChanges = 0;
  std::int64_t reframes = 0;
  std::int64_t flickers = 0;
  /** Milliseconds between two changes of a stream. */
  Distribution betweenChanges;
  /** Milliseconds of the shots that ended. */
  Distribution shotLength;
  std::int64_t thereAndBacks = 0;
  std::int64_t tileHops = 0;
  PersonTime personTime;
  /** Time with somebody in the room, and how much of it everybody was fully in view. */
  std::int64_t occupiedMs = 0;
  std::int64_t everybodyMs = 0;
  /** Person-time of stays in which the person was never shown, and persons of whom nothing was ever shown. */
  std::int64_t neverShownMs = 0;
  std::int64_t personsNeverShown = 0;
  /** Time with somebody in the room and a frame that shows nobody, that cuts a head, or two that show
   * somebody twice.
   */
  std::int64_t nobodyInItMs = 0;
  std::int64_t headCutMs = 0;
  std::int64_t shownTwiceMs = 0;
  std::int64_t distortedMs = 0;
  /** Time of the persons whom a frame was made for, and how much of it that frame showed them whole. */
  std::int64_t subjectMs = 0;
  std::int64_t subjectWholeMs = 0;
  /** Height of a head in the output, as a share of the output's height. */
  Distribution headSize;
  /** From the top of a frame to its highest head, as a share of the frame's height. */
  Distribution headRoom;
  /** From the eye line of a frame's heads to its upper third, as a share of the frame's height. */
  Distribution thirds;
  std::array<Answers, kRoomEventNames.size()> answers;
  std::int64_t speakingMs = 0;
  std::int64_t speakerFramedMs = 0;
  std::int64_t speakerInViewMs = 0;
  /** Speaking time of the turns that count, and how much of it the speaker was shown so. */
  std::int64_t turnMs = 0;
  std::int64_t turnSingledOutMs = 0;
  std::int64_t turnCloseMs = 0;
  /** Milliseconds until the speaker of a turn was framed, or until its end. */
  Distribution turnToFramed;
  /** Tenths of a microsecond per vision result. The one figure that differs from run to run. */
  Distribution decisionTime;
  TimeLine timeLine;
  /** By the configuration key. */
  std::map<std::string, WaitFigures> waits;

  Answers& answersTo(RoomEvent event) { return answers[static_cast<std::size_t>(event)]; }
  const Answers& answersTo(RoomEvent event) const { return answers[static_cast<std::size_t>(event)]; }

  /** Adds another recording's figures; the time lines stay apart. */
  void merge(const Measurement& other);
};

/** The figures, without the time line and the waits. */
nlohmann::json measurementAsJson(const Measurement& measurement);

/** The figures, without a time line and waits. Raises the JSON library's errors. */
Measurement measurementOf(const nlohmann::json& document);

}  // namespace fyn::productionrules
