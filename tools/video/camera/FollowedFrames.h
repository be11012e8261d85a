#pragma once

#include <cstdint>
#include <deque>

#include "tools/video/camera/Inbox.h"
#include "tools/video/camera/Player.h"

namespace fyn::productionrules::video {

/**
 * Shows the frames of vision results, each after a delay in which its scene can come. Scenes come from the
 * service; until the first one does, those on the bus stand in: a provider that starts late gets there what
 * the broker has kept.
 */
class FollowedFrames {
 public:
  /** `delayMs` counts in the time of the frames. */
  FollowedFrames(Player& player, std::int64_t delayMs) : mPlayer(player), mDelayMs(delayMs) {}

  void handle(const Arrival& arrival);

  /** Shows the frames that still wait. */
  void finish();

 private:
  void handleResult(const std::string& text);
  void showFirst();

  Player& mPlayer;
  const std::int64_t mDelayMs;
  std::deque<VisionFrame> mWaiting;
  bool mServed = false;
};

}  // namespace fyn::productionrules::video
