#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>

#include "platform/Mutex.h"

namespace fyn::productionrules::video {

/** What reaches the camera provider from outside. */
struct Arrival {
  enum class Kind { nothing, visionResult, sceneFromService, sceneFromBus };
  Kind kind = Kind::nothing;
  std::string text;
};

/** Arrivals in their order, from any thread to one reader; of a reader that does not come the latest thousand
 * wait. */
class Inbox {
 public:
  void put(Arrival arrival);

  /** The next one; nothing when none comes within `limit`. */
  std::optional<Arrival> take(std::chrono::milliseconds limit);

 private:
  Mutex mMutex;
  ConditionVariable mFilled;
  std::deque<Arrival> mArrivals PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules::video
