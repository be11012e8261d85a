#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "tools/report/Measurement.h"
#include "tools/report/RoomState.h"

namespace fyn::productionrules {

/** Measures how the pictures follow the turns of those who speak. Times in milliseconds. */
class SpeechMeter {
 public:
  /** Pauses up to this long are part of a turn. */
  static constexpr std::int64_t kPauseMs = 1000;
  /** Shorter turns do not count: no picture could follow them. */
  static constexpr std::int64_t kShortestTurnMs = 2000;

  explicit SpeechMeter(Measurement& measurement) : mMeasurement(measurement) {}

  /** From `t` on the room and the picture are these. */
  void take(std::int64_t t, const RoomState& room);

  /** The state that was taken last lasted until `t`, and `time` milliseconds of it count. */
  void last(std::int64_t t, std::int64_t time);

  /** The recording ends. */
  void finish();

 private:
  struct Turn {
    std::int64_t start = 0;
    std::int64_t end = 0;
    bool isSpeaking = false;
    bool isSingledOut = false;
    bool isClose = false;
    std::int64_t speakingMs = 0;
    std::int64_t singledOutMs = 0;
    std::int64_t closeMs = 0;
    bool beganFramed = false;
    /** From the start; nothing while the speaker has not been framed. */
    std::optional<std::int64_t> framedAfter;
  };

  void endTurn(const Turn& turn);

  Measurement& mMeasurement;
  std::map<std::int64_t, Turn> mTurns;
};

}  // namespace fyn::productionrules
