#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "config/PrConfig.h"
#include "tools/base/InputFile.h"
#include "tools/recording/RecordingReader.h"
#include "tools/replay/Replay.h"
#include "tools/report/FramingMeter.h"
#include "tools/report/MeasureRecordings.h"
#include "tools/report/OpenWaits.h"
#include "tools/why/KeyChange.h"

namespace fyn::productionrules {

/** A decision and when it was made, in milliseconds from the start of the recording. */
struct TimedDecision {
  std::int64_t t = 0;
  LayoutDecision decision;
};

/** A recording that is replayed up to a moment that somebody asks about, and can be replayed on from there.
 */
class MomentReplay final : public ReplayObserver, public DecisionListener {
 public:
  /** With the change of a key, or as it was. Raises UsageError when the file cannot be read. */
  MomentReplay(const std::string& path, const MeasuredSetup& setup, const std::optional<KeyChange>& change);

  /** Told each event when it has been handled. */
  using AfterEvent = std::function<void(const RecordingEvent& event)>;

  /** Handles what happens up to `t`, in milliseconds. False when the recording ends before. */
  bool playUntil(std::int64_t t, const GivenUp& isGivenUp, const AfterEvent& afterEvent = {});

  /** Handles the rest. */
  void playToEnd(const AfterEvent& afterEvent);

  const RoomState& room() const { return mMeter.room(); }
  const Measurement& measurement() const { return mMeter.measurement(); }
  const std::vector<TimedDecision>& decisions() const { return mDecisions; }
  const OpenWaits& waits() const { return mWaits; }
  Replay& replay() { return mReplay; }

  /** The configuration in force. */
  PrConfig configuration();

  void onDecision(const LayoutDecision& decision) override;

 private:
  ReplayOptions optionsFor(const MeasuredSetup& setup, const std::optional<KeyChange>& change);
  void handleNext(const AfterEvent& afterEvent);

  const std::optional<KeyChange> mChange;
  std::istringstream mNoInput;
  std::ostringstream mPrinted;
  InputFile mInput;
  RecordingReader mReader;
  FramingMeter mMeter;
  std::vector<TimedDecision> mDecisions;
  OpenWaits mWaits{[](const OpenWait&, WaitEnd) {}};
  Replay mReplay;
  RecordingEvent mNext;
  bool mHasNext = false;
};

}  // namespace fyn::productionrules
