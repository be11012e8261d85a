#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/CameraProvider.h"
#include "platform/Mutex.h"

namespace fyn::productionrules {

class DBusConnection;

/** Where the D-Bus camera provider is found; docs/camera-provider.md is the description for its makers. */
struct DBusCameraProviderNames {
  /** Bus name of the instance "default"; another instance has ".INSTANCE" behind it. */
  static constexpr const char* kService = "fyn.productionrules.CameraProvider";
  static constexpr const char* kPath = "/fyn/productionrules/CameraProvider";
  static constexpr const char* kInterface = "fyn.productionrules.CameraProvider1";
  static constexpr const char* kSetSceneJson = "SetSceneJson";
};

struct DBusOptions {
  /** "session", "system" or the address of a bus, such as "unix:path=/run/x". */
  std::string bus = "session";
  /** No call of the provider takes longer. One that hangs costs this much once per scene document. */
  std::chrono::milliseconds callLimit{250};
  /** How long the bus may take to say who the provider is. The service looks for it once after a death: a
   * busy machine must not cost all pictures from then on. */
  std::chrono::milliseconds lookupLimit{2000};
  /** How often a bus that cannot be reached is tried again for whoever waits for an appearance. */
  std::chrono::milliseconds busRetry{1000};
};

/**
 * Camera providers that are services on a D-Bus. One that is not there is started by the bus, where the bus
 * knows how. A bus that is not there counts as no provider; it is looked for again at every `getService`, and
 * every `busRetry` once there is an appearance handler. When the bus goes away every provider on it has died.
 */
class DBusCameraProviders final : public ICameraProviders {
 public:
  explicit DBusCameraProviders(const DBusOptions& options);
  /** Providers that are still held stay valid: calls on them fail. */
  ~DBusCameraProviders() override;

  std::shared_ptr<IQuilCameraProvider> getService(const std::string& instance) override;

  /** A provider appears when its name gets an owner, or when a bus comes back on which it has one. */
  void setAppearanceHandler(std::function<void()> appeared) override;

 private:
  class Provider;

  std::shared_ptr<DBusConnection> livingConnection();
  void keepConnected(std::shared_ptr<DBusConnection> known);

  const DBusOptions mOptions;
  Mutex mMutex;
  std::shared_ptr<DBusConnection> mConnection PR_GUARDED_BY(mMutex);
  bool mAbsenceSaid PR_GUARDED_BY(mMutex) = false;
  std::function<void()> mAppeared PR_GUARDED_BY(mMutex);

  Mutex mKeeperMutex;
  ConditionVariable mKeeperWake;
  bool mStopping PR_GUARDED_BY(mKeeperMutex) = false;
  std::thread mKeeper;
};

}  // namespace fyn::productionrules
