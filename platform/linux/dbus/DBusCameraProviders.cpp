#include "platform/linux/dbus/DBusCameraProviders.h"

#include <utility>

#include "platform/Backends.h"
#include "platform/DeathRecipients.h"
#include "platform/ServiceStateScope.h"
#include "platform/VisionSettings.h"
#include "platform/linux/PlatformOptions.h"
#include "platform/linux/dbus/DBusConnection.h"

namespace fyn::productionrules {

using std::chrono::milliseconds;

namespace {

constexpr const char* kTag = "DBusCameraProviders";
using Names = DBusCameraProviderNames;

}  // namespace

/** One process that owns the provider's name. Another process with that name later is another provider. */
class DBusCameraProviders::Provider final : public IQuilCameraProvider,
                                            public DBusNameWatcher,
                                            public std::enable_shared_from_this<Provider> {
 public:
  Provider(std::shared_ptr<DBusConnection> connection, std::string owner, milliseconds limit)
      : mConnection(std::move(connection)),
        mOwner(std::move(owner)),
        mLimit(limit),
        mProxy(mConnection->proxy(mOwner, Names::kPath)) {}

  bool setSceneJson(const std::string& json) override {
    return !mRecipients.isDead() &&
           mConnection->callWithText(*mProxy, Names::kInterface, Names::kSetSceneJson, json, mLimit);
  }

  bool linkToDeath(const std::shared_ptr<DeathRecipient>& recipient, std::uint64_t cookie) override {
    return mRecipients.link(recipient, cookie);
  }

  void unlinkToDeath(const std::shared_ptr<DeathRecipient>& recipient) override {
    mRecipients.unlink(recipient);
  }

  const std::string& watchedOwner() const override { return mOwner; }
  void ownerLeft() override { mRecipients.announceDeath(weak_from_this()); }

 private:
  const std::shared_ptr<DBusConnection> mConnection;
  const std::string mOwner;
  const milliseconds mLimit;
  const std::unique_ptr<sdbus::IProxy> mProxy;
  DeathRecipients mRecipients;
};

DBusCameraProviders::DBusCameraProviders(const DBusOptions& options) : mOptions(options) {}

DBusCameraProviders::~DBusCameraProviders() {
  {
    const MutexLock lock(mKeeperMutex);
    mStopping = true;
  }
  mKeeperWake.notifyAll();
  if (mKeeper.joinable()) {
    mKeeper.join();
  }
  const MutexLock lock(mMutex);
  if (mConnection) {
    mConnection->stop();
  }
}

std::shared_ptr<IQuilCameraProvider> DBusCameraProviders::getService(const std::string& instance) {
  const std::shared_ptr<DBusConnection> connection = livingConnection();
  if (!connection) {
    return nullptr;
  }
  const std::string name = instance == "default" ? Names::kService : Names::kService + ("." + instance);
  const std::optional<std::string> owner = connection->ownerOf(name, mOptions.lookupLimit);
  if (!owner) {
    connection->requestStart(name);
    return nullptr;
  }
  try {
    auto provider = std::make_shared<Provider>(connection, *owner, mOptions.callLimit);
    connection->watch(provider);
    // An owner that left before the watch began is noticed here, one that leaves later by the watch.
    return connection->ownerOf(name, mOptions.lookupLimit) == owner ? provider : nullptr;
  } catch (const sdbus::Error& fault) {
    PRB_LOGW(kTag, "%s: %s", "getService", fault.what());
    return nullptr;
  }
}

void DBusCameraProviders::setAppearanceHandler(std::function<void()> appeared) {
  {
    const MutexLock lock(mMutex);
    mAppeared = std::move(appeared);
  }
  // Whoever is there by now is not an appearance: the caller looks for it next.
  mKeeper = std::thread(
      inThisServiceState([this, first = livingConnection()]() mutable { keepConnected(std::move(first)); }));
}

void DBusCameraProviders::keepConnected(std::shared_ptr<DBusConnection> known) {
  for (;;) {
    {
      MutexLock lock(mKeeperMutex);
      if (mKeeperWake.waitFor(lock, mOptions.busRetry,
                              [this]() PR_REQUIRES(mKeeperMutex) { return mStopping; })) {
        return;
      }
    }
    const std::shared_ptr<DBusConnection> connection = livingConnection();
    const bool isNew = connection != nullptr && connection != known;
    known = connection;
    if (isNew && connection->ownerOf(Names::kService, mOptions.lookupLimit)) {
      std::function<void()> appeared;
      {
        const MutexLock lock(mMutex);
        appeared = mAppeared;
      }
      appeared();
    }
  }
}

std::shared_ptr<DBusConnection> DBusCameraProviders::livingConnection() {
  const MutexLock lock(mMutex);
  if (mConnection && mConnection->isAlive()) {
    return mConnection;
  }
  if (mConnection) {
    mConnection->stop();
    mConnection.reset();
  }
  try {
    mConnection =
        DBusConnection::open(mOptions.bus, Names::kService, [appeared = mAppeared](const std::string& name) {
          if (appeared && name == Names::kService) {
            appeared();
          }
        });
    mAbsenceSaid = false;
  } catch (const sdbus::Error& fault) {
    if (!std::exchange(mAbsenceSaid, true)) {
      PRB_LOGW(kTag, "the %s bus cannot be reached: %s", mOptions.bus.c_str(), fault.what());
    }
  }
  return mConnection;
}

const ProvidersBackend::Maker kMakeDBusProviders =
    [](const PlatformOptions& options) -> std::shared_ptr<ICameraProviders> {
  DBusOptions dbus;
  dbus.bus = options.provider.substr(std::string("dbus:").size());
  return std::make_shared<DBusCameraProviders>(dbus);
};

}  // namespace fyn::productionrules
