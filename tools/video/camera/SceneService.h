#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/Mutex.h"

namespace sdbus {
class IConnection;
}

namespace fyn::productionrules::video {

/**
 * The camera provider's side of D-Bus: takes scene documents on a thread of its own and hands them on at
 * once. When the bus goes away it looks for it again, once a second.
 */
class SceneService {
 public:
  /**
   * Serves on `bus`: "session", "system" or an address. Returns when its name is on the bus; raises
   * UsageError when the bus cannot be reached or another provider has the name. `take` is called on the
   * thread.
   */
  SceneService(std::string bus, std::function<void(const std::string&)> take);
  ~SceneService();
  SceneService(const SceneService&) = delete;
  SceneService& operator=(const SceneService&) = delete;

 private:
  struct Served;

  std::shared_ptr<Served> serveOnce();
  void keepServing(std::shared_ptr<Served> served);
  /** Null from the moment that it is to end. */
  std::shared_ptr<Served> serveAgain();

  const std::string mBus;
  const std::function<void(const std::string&)> mTake;
  Mutex mMutex;
  ConditionVariable mWakeUp;
  bool mEnding PR_GUARDED_BY(mMutex) = false;
  std::shared_ptr<Served> mServed PR_GUARDED_BY(mMutex);
  std::thread mThread;
};

}  // namespace fyn::productionrules::video
