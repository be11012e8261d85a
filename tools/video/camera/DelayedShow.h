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

  /** Whether the time of a frame that waits has come. */
  bool isDue() const { return isDue(0); }

  /** Shows one that is due. Others before it that are too late to be of use are left out, where they may be.
   */
  void showDue();

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
  /** Lets a frame wait that was taken just now. */
  void add(Waiting taken);

  Player& player() { return mPlayer; }
  std::int64_t delayMs() const { return mDelayMs; }

 private:
  bool isDue(std::size_t index) const;
  std::int64_t lateMs(std::size_t index) const;
  void showFirst();

  Player& mPlayer;
  const std::int64_t mDelayMs;
  std::deque<Waiting> mWaiting;
  /** When the newest frame was taken. */
  std::int64_t mNewestMs = 0;
  bool mServed = false;
};

}  // namespace fyn::productionrules::video
