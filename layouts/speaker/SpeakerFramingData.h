#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "model/FynHead.h"
#include "model/Timer.h"

namespace fyn::productionrules {

/**
 * What is known of the speech in one camera: who speaks, where the speaker's head has been lately, and
 * whether the speaker's position can be trusted. While it cannot, the recovery mode is on and the picture is
 * to show the group.
 *
 * Two signs start the recovery mode, each with its switch: the position of the speaker is unsteady, or nobody
 * has been tagged for long although the picture shows a speaker.
 */
class SpeakerFramingData {
 public:
  /** No speaker. */
  static constexpr std::int64_t kNobody = -1;

  /**
   * Takes in one vision result. `speakers` are those in view who speak, in the engine's order;
   * `pictureShowsSpeaker` says whether the layout on screen follows somebody. `tick` is the clock of the
   * recovery mode.
   */
  void update(bool isAnybodyInView, const std::vector<std::shared_ptr<FynHead>>& speakers,
              std::uint32_t camId, bool pictureShowsSpeaker, const TickFunction& tick);

  /** Who speaks in the latest vision result. */
  const std::vector<std::shared_ptr<FynHead>>& speakers() const { return mSpeakers; }

  /** The one who speaks; of several, who has spoken before them. kNobody when nobody does. */
  std::int64_t activeSpeaker() const { return mActiveSpeaker; }

  bool isRecovering() const { return mRecoveryTimer.isStarted(); }

  /** Why the recovery mode is on; "" while it is off. */
  const char* recoveryReason() const { return mRecoveryReason; }

  /** Who speaks and the recovery mode, as members of a JSON object that has some before them. */
  std::string debugText(std::uint32_t now) const;

 private:
  void updateActiveSpeaker();
  void checkPosition(std::uint32_t camId, std::uint32_t now);
  void checkTags(bool anybodyInView, bool pictureShowsSpeaker, std::uint32_t now);
  void startRecovery(const char* reason, std::uint32_t now);
  void startAfresh();

  /** Where a speaker's head was, in camera pixels. */
  struct Sample {
    std::int64_t person;
    double x;
    double y;
  };
  static double deviationOf(const std::deque<Sample>& samples);

  std::vector<std::shared_ptr<FynHead>> mSpeakers;
  std::int64_t mActiveSpeaker = kNobody;
  /** The latest centres of the speaker's head. */
  std::deque<Sample> mCentres;
  /** Ticks of the latest vision results with an unsteady position. */
  std::deque<std::uint32_t> mUnsteadyTicks;
  /** Vision results in a row with people of whom none was tagged. */
  std::int32_t mUntaggedResults = 0;
  Timer mRecoveryTimer;
  const char* mRecoveryReason = "";
};

}  // namespace fyn::productionrules
