#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/meeting/Conversation.h"
#include "tools/meeting/Detector.h"
#include "tools/meeting/Motion.h"
#include "tools/meeting/SeatedMeeting.h"
#include "tools/meeting/Speech.h"
#include "tools/meeting/Turns.h"
#include "tools/meeting/VisionResult.h"

namespace fyn::productionrules {

struct SimulationOptions {
  static constexpr int kMostPeople = 64;
  static constexpr int kMostMinutes = 24 * 60;
  static constexpr int kMostCameras = 8;

  std::uint64_t seed = 1;
  int people = 4;
  int minutes = 10;
  int cameras = 1;
  MeetingErrors errors = *errorsOf("none");
  /** Without one people come, walk about and go as `makePaths` has it; with one there are at most
   * `Seating::kMostPeople`. */
  const Seating* seating = nullptr;
  /** Of people with fixed seats. */
  Movements movements;
  /** Per cent of the time of speech, of a conversation that is made up. */
  int overlap = 0;
  /** What the people say, instead of a conversation that is made up. */
  std::optional<std::vector<Turn>> turns;
};

/**
 * A meeting as its cameras see it, 30 results per second. Camera 0 shows the room as it is; camera N shows
 * the same people shifted sideways by 110 pixels for each N (odd ones to the right, even ones to the left),
 * at 85 % of the size (odd) or 115 % (even), and from a direction 35 degrees further round for each N.
 * Persons are 1, 2, ..., passers-by come after them; false boxes have ids from 10000 on, 100000 of them for
 * each camera; what the tracker of camera N takes for somebody new from (N + 1) million on. The same options
 * give the same results on every machine.
 */
class Simulation {
 public:
  explicit Simulation(const SimulationOptions& options);

  const std::vector<MeetingCamera>& cameras() const { return mCameras; }

  std::int64_t resultCount() const;

  /** The next result, in order of time. */
  VisionResult next();

  /** Who was there at the latest result: what a detector without errors would have reported. */
  const Truth& truth() const { return mTruth; }

 private:
  struct View {
    std::int32_t camera;
    Detector detector;
  };

  std::vector<SpeechTurn> conversation() const;
  void look(View& view, std::int64_t t, std::vector<SeenPerson>& persons);

  const SimulationOptions mOptions;
  const std::int64_t mDuration;
  std::vector<MeetingCamera> mCameras;
  std::vector<PersonPath> mPaths;
  Speech mSpeech;
  /** Who is said to speak. */
  Speech mTags;
  std::vector<View> mViews;
  Truth mTruth;
  std::int64_t mFrame = 0;
};

}  // namespace fyn::productionrules
