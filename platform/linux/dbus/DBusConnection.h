#pragma once

#include <sdbus-c++/sdbus-c++.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/Mutex.h"

namespace fyn::productionrules {

/** Told when a name on the bus loses its owner, or when the bus goes away. */
class DBusNameWatcher {
 public:
  virtual ~DBusNameWatcher() = default;
  virtual const std::string& watchedOwner() const = 0;
  virtual void ownerLeft() = 0;
};

/**
 * One connection to a D-Bus with a thread that serves it. Unlike the library's own event loop thread it
 * survives the death of the bus, and no call waits longer than its limit.
 */
class DBusConnection : public std::enable_shared_from_this<DBusConnection> {
 public:
  /**
   * Connects to `bus` ("session", "system" or an address) and watches the owners of `name` and of the names
   * beneath it. `owned` is called on the serving thread with each of these names that gets an owner. Throws
   * sdbus::Error when the bus cannot be reached.
   */
  static std::shared_ptr<DBusConnection> open(const std::string& bus, const std::string& name,
                                              std::function<void(const std::string& name)> owned);
  DBusConnection(const std::string& bus, const std::string& name,
                 std::function<void(const std::string& name)> owned);
  ~DBusConnection();
  DBusConnection(const DBusConnection&) = delete;
  DBusConnection& operator=(const DBusConnection&) = delete;

  /** The unique name behind a well-known one; nothing when nobody owns it or the bus does not answer. */
  std::optional<std::string> ownerOf(const std::string& name, std::chrono::milliseconds limit);

  /** Asks the bus to start who should own the name, where it knows how, and does not wait for it. */
  void requestStart(const std::string& name);

  std::unique_ptr<sdbus::IProxy> proxy(const std::string& destination, const std::string& path);

  /** Calls a method that takes one text and returns nothing; false when it fails or takes longer. */
  bool callWithText(sdbus::IProxy& proxy, const char* interfaceName, const char* method,
                    const std::string& text, std::chrono::milliseconds limit);

  void watch(const std::weak_ptr<DBusNameWatcher>& watcher);

  /** False from the moment the bus has gone. */
  bool isAlive() const { return mAlive.load(); }

  /** Ends the thread. Calls in hand fail. */
  void stop();

 private:
  void serve();
  void ownerChanged(sdbus::Message& signal);
  void tellWatchers(const std::function<bool(const DBusNameWatcher&)>& concerned);
  bool isServingThread() const { return std::this_thread::get_id() == mThreadId.load(); }

  const std::function<void(const std::string& name)> mOwned;
  std::unique_ptr<sdbus::IConnection> mConnection;
  std::unique_ptr<sdbus::IProxy> mDaemon;
  sdbus::Slot mOwnerWatch;
  std::atomic<bool> mAlive{true};
  std::atomic<std::thread::id> mThreadId{};

  Mutex mMutex;
  std::vector<std::weak_ptr<DBusNameWatcher>> mWatchers PR_GUARDED_BY(mMutex);

  Mutex mThreadMutex;
  std::thread mThread PR_GUARDED_BY(mThreadMutex);
};

}  // namespace fyn::productionrules
