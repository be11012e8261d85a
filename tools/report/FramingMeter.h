#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <set>

#include "layouts/cycle/LayoutDecision.h"
#include "tools/replay/Replay.h"
#include "tools/replay/ReplayObserver.h"
#include "tools/report/ChangeMeter.h"
#include "tools/report/CompositionMeter.h"
#include "tools/report/EventMeter.h"
#include "tools/report/FaultMeter.h"
#include "tools/report/Measurement.h"
#include "tools/report/RoomState.h"
#include "tools/report/ShotMeter.h"
#include "tools/report/SpeechMeter.h"
#include "tools/report/StayMeter.h"
#include "tools/report/WaitMeter.h"

namespace fyn::productionrules {

/**
 * Measures the framing of a replayed meeting, whatever engine decides it: after every event it compares what
 * is on screen with who is in the room, by the truth where the recording tells it, else by the vision
 * results.
 */
class FramingMeter final : public ReplayObserver, public DecisionListener {
 public:
  /** Without the truth, a picture is measured for this long after a vision result at the most, in
   * milliseconds: what the room looks like later is not known. */
  static constexpr std::int64_t kLongestHoldMs = 1000;

  /** Measures only the stream `stream`, when one is given. */
  explicit FramingMeter(std::optional<int> stream = std::nullopt);

  /** Hands an event to the replay and measures what comes of it. `replay` reports to this meter. */
  void handle(Replay& replay, const RecordingEvent& event);

  /** The recording ends. */
  void finish(Replay& replay);

  const Measurement& measurement() const { return mMeasurement; }

  /** Who is there, and what the streams show of it, after the latest event. */
  const RoomState& room() const { return mRoom; }

  void onDecision(const LayoutDecision& decision) override;

 private:
  /** Before the first vision result nothing can ask for a picture. */
  bool hasBegun() const { return mMeasurement.visionResults > 0; }

  void takeTruth(std::int64_t t, const Truth& truth);
  void takeResult(const RecordingEvent& event, std::chrono::nanoseconds took, VisionResultReader& reader);
  void seePersons(std::int64_t t);
  void placePersons(ProductionRuleIPCService& service);
  void placeIn(const StreamPicture& picture);
  void countOwnFrames(PersonState& person) const;
  std::set<int> takePictures(std::int64_t t, ProductionRuleIPCService& service);
  void passTime(std::int64_t t);

  std::optional<int> mStream;
  Measurement mMeasurement;
  ChangeMeter mChanges;
  ShotMeter mShots;
  CompositionMeter mComposition;
  FaultMeter mFaults;
  StayMeter mStays;
  SpeechMeter mSpeech;
  EventMeter mEvents;
  WaitMeter mWaits;
  RoomState mRoom;
  /** The mode in which the persons of mRoom were placed in its pictures; nothing when either is new. */
  std::optional<FramingMode> mPlacedIn;
  /** The persons of mRoom are those of the truth, else those of the latest vision result. */
  bool mKnowsTruth = false;
  /** Streams for which the event that is handled has brought a new layout. */
  std::set<int> mDecided;
  std::int64_t mMeasuredUntil = 0;
  std::int64_t mHoldUntil = 0;
};

}  // namespace fyn::productionrules
