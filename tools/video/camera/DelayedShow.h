#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "tools/video/camera/Inbox.h"
#include "tools/video/camera/Player.h"

namespace fyn::productionrules::video {

/**
 * Shows frames, each after a delay in which its scene can come. Scenes come from the service; until the first
 * one does, those on the bus stand in: a provider that starts late gets there what the broker has kept.
 */
class DelayedShow {
 public:
  /** `delayMs` counts in the time of the frames. */
  DelayedShow(Player& player, std::int64_t delayMs) : mPlayer(player), mDelayMs(delayMs) {}
  virtual ~DelayedShow() = default;
  DelayedShow(const DelayedShow&) = delete;
  DelayedShow& operator=(const DelayedShow&) = delete;

  void handle(const Arrival& arrival);

  /** Shows the frames that still wait, as many as it can by then. */
  void finish(std::chrono::steady_clock::time_point end);

 protected:
  struct Waiting {
    VisionFrame frame;
    /** None when the player is to read them. */
    std::vector<cv::Mat> pictures;
  };

  virtual void handleResult(VisionFrame result) = 0;
  virtual void show(const Waiting& waiting, std::optional<std::int64_t> nextMs) = 0;
  void showFirst();

  Player& player() { return mPlayer; }
  std::int64_t delayMs() const { return mDelayMs; }
  std::deque<Waiting>& waiting() { return mWaiting; }

 private:
  Player& mPlayer;
  const std::int64_t mDelayMs;
  std::deque<Waiting> mWaiting;
  bool mServed = false;
};

}  // namespace fyn::productionrules::video
