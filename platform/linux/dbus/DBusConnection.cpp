#include "platform/linux/dbus/DBusConnection.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <future>
#include <utility>

#include "platform/ServiceStateScope.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

using std::chrono::milliseconds;

namespace {

constexpr const char* kDaemon = "org.freedesktop.DBus";
constexpr const char* kDaemonPath = "/org/freedesktop/DBus";

// The time-out of the bus library should strike first; this catches a bus that has died meanwhile.
constexpr milliseconds kGrace{100};

std::unique_ptr<sdbus::IConnection> connectTo(const std::string& bus) {
  if (bus == "session") {
    return sdbus::createSessionBusConnection();
  }
  if (bus == "system") {
    return sdbus::createSystemBusConnection();
  }
  return sdbus::createSessionBusConnectionWithAddress(bus);
}

/**
 * Starts a call through `start(callback)` and waits for its outcome. The library's own waiting call would
 * wait for ever when the serving thread has ended.
 */
template <typename Result, typename Start>
std::optional<Result> waitFor(milliseconds limit, Start start) {
  auto outcome = std::make_shared<std::promise<std::optional<Result>>>();
  std::future<std::optional<Result>> arrived = outcome->get_future();
  sdbus::PendingAsyncCall call = start(outcome);
  if (arrived.wait_for(limit + kGrace) != std::future_status::ready) {
    call.cancel();
    return std::nullopt;
  }
  return arrived.get();
}

}  // namespace

std::shared_ptr<DBusConnection> DBusConnection::open(const std::string& bus, const std::string& name,
                                                     std::function<void(const std::string& name)> owned) {
  auto opened = std::make_shared<DBusConnection>(bus, name, std::move(owned));
  const MutexLock lock(opened->mThreadMutex);
  // The thread keeps the connection alive for as long as it serves it.
  opened->mThread = std::thread(inThisServiceState([opened] { opened->serve(); }));
  return opened;
}

DBusConnection::DBusConnection(const std::string& bus, const std::string& name,
                               std::function<void(const std::string& name)> owned)
    : mOwned(std::move(owned)),
      mConnection(connectTo(bus)),
      mDaemon(sdbus::createProxy(*mConnection, kDaemon, kDaemonPath)) {
  const std::string rule = std::string("type='signal',sender='") + kDaemon + "',interface='" + kDaemon +
                           "',member='NameOwnerChanged',arg0namespace='" + name + "'";
  mOwnerWatch = mConnection->addMatch(rule, [this](sdbus::Message& signal) {
    try {
      ownerChanged(signal);
    } catch (const std::exception& fault) {
      // The caller is C.
      PRB_LOGE("DBusConnection", "%s: %s", "ownerChanged", fault.what());
    }
  });
}

DBusConnection::~DBusConnection() {
  if (mThread.joinable()) {
    // Only the serving thread itself can hold the last reference to a connection that was never stopped.
    mThread.detach();
  }
}

std::optional<std::string> DBusConnection::ownerOf(const std::string& name, milliseconds limit) {
  if (!isAlive()) {
    return std::nullopt;
  }
  try {
    if (isServingThread()) {
      std::string owner;
      mDaemon->callMethod("GetNameOwner")
          .onInterface(kDaemon)
          .withTimeout(limit)
          .withArguments(name)
          .storeResultsTo(owner);
      return owner;
    }
    return waitFor<std::string>(limit, [&](auto outcome) {
      return mDaemon->callMethodAsync("GetNameOwner")
          .onInterface(kDaemon)
          .withTimeout(limit)
          .withArguments(name)
          .uponReplyInvoke([outcome](const sdbus::Error* error, const std::string& owner) {
            outcome->set_value(error == nullptr ? std::optional(owner) : std::nullopt);
          });
    });
  } catch (const sdbus::Error&) {
    return std::nullopt;
  }
}

void DBusConnection::requestStart(const std::string& name) {
  constexpr std::uint32_t kNoFlags = 0;
  try {
    mDaemon->callMethod("StartServiceByName")
        .onInterface(kDaemon)
        .withArguments(name, kNoFlags)
        .dontExpectReply();
  } catch (const sdbus::Error&) {
    // The bus has gone.
  }
}

std::unique_ptr<sdbus::IProxy> DBusConnection::proxy(const std::string& destination,
                                                     const std::string& path) {
  return sdbus::createProxy(*mConnection, destination, path);
}

bool DBusConnection::callWithText(sdbus::IProxy& proxy, const char* interfaceName, const char* method,
                                  const std::string& text, milliseconds limit) {
  if (!isAlive()) {
    return false;
  }
  try {
    if (isServingThread()) {
      proxy.callMethod(method).onInterface(interfaceName).withTimeout(limit).withArguments(text);
      return true;
    }
    const std::string name = method;
    return waitFor<bool>(limit,
                         [&](auto outcome) {
                           return proxy.callMethodAsync(name)
                               .onInterface(interfaceName)
                               .withTimeout(limit)
                               .withArguments(text)
                               .uponReplyInvoke([outcome](const sdbus::Error* error) {
                                 outcome->set_value(error == nullptr);
                               });
                         })
        .value_or(false);
  } catch (const sdbus::Error&) {
    return false;
  }
}

void DBusConnection::watch(const std::weak_ptr<DBusNameWatcher>& watcher) {
  const MutexLock lock(mMutex);
  mWatchers.erase(
      std::remove_if(mWatchers.begin(), mWatchers.end(), [](const auto& known) { return known.expired(); }),
      mWatchers.end());
  mWatchers.push_back(watcher);
}

void DBusConnection::stop() {
  mConnection->leaveEventLoop();
  const MutexLock lock(mThreadMutex);
  if (mThread.joinable() && !isServingThread()) {
    mThread.join();
  }
}

void DBusConnection::serve() {
  mThreadId = std::this_thread::get_id();
  try {
    mConnection->enterEventLoop();
  } catch (const sdbus::Error&) {
    // The bus has gone.
  }
  mAlive = false;
  tellWatchers([](const DBusNameWatcher&) { return true; });
}

void DBusConnection::ownerChanged(sdbus::Message& signal) {
  std::string name;
  std::string oldOwner;
  std::string newOwner;
  signal >> name >> oldOwner >> newOwner;
  if (!oldOwner.empty()) {
    tellWatchers([&](const DBusNameWatcher& watcher) { return watcher.watchedOwner() == oldOwner; });
  }
  if (!newOwner.empty()) {
    mOwned(name);
  }
}

void DBusConnection::tellWatchers(const std::function<bool(const DBusNameWatcher&)>& concerned) {
  std::vector<std::weak_ptr<DBusNameWatcher>> watchers;
  {
    const MutexLock lock(mMutex);
    watchers = mWatchers;
  }
  // Outside the lock: whoever is told may look for another owner.
  for (const std::weak_ptr<DBusNameWatcher>& entry : watchers) {
    const std::shared_ptr<DBusNameWatcher> watcher = entry.lock();
    if (watcher && concerned(*watcher)) {
      watcher->ownerLeft();
    }
  }
}

}  // namespace fyn::productionrules
