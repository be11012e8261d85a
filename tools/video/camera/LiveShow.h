#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "tools/video/camera/Inbox.h"
#include "tools/video/camera/Player.h"

namespace fyn::productionrules::video {

/**
 * Shows the frames of inputs that this program owns, each after a delay in which its scene can come. Who
 * looks at them and who decides may come late, hang or die: the scene then stays as it is.
 */
class LiveShow {
 public:
  /** `delayMs` counts in the time of the frames. */
  LiveShow(Player& player, std::int64_t delayMs) : mPlayer(player), mDelayMs(delayMs) {}

  /** A vision result's heads are drawn from then on; scenes as FollowedFrames takes them. */
  void handle(const Arrival& arrival);

  /** The frame that the player has just read; shows those whose time has come. */
  void take(const FrameTime& taken);

  /** Shows the frames that still wait. */
  void finish();

 private:
  struct Waiting {
    FrameTime time;
    std::vector<cv::Mat> pictures;
  };

  void showFirst();

  Player& mPlayer;
  const std::int64_t mDelayMs;
  std::deque<Waiting> mWaiting;
  std::vector<ShownHead> mHeads;
  bool mServed = false;
};

}  // namespace fyn::productionrules::video
