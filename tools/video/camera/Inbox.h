#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace fyn::productionrules::video {

/** What reaches the camera provider from outside. */
struct Arrival {
  enum class Kind { nothing, visionResult, sceneFromService, sceneFromBus };
  Kind kind = Kind::nothing;
  std::string text;
};

/** Arrivals in their order, from any thread to one reader. */
class Inbox {
 public:
  void put(Arrival arrival);

  /** The next one; nothing when none comes within `limit`. */
  std::optional<Arrival> take(std::chrono::milliseconds limit);

 private:
  std::mutex mMutex;
  std::condition_variable mFilled;
  std::deque<Arrival> mArrivals;
};

}  // namespace fyn::productionrules::video
