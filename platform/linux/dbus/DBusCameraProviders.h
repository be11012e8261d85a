#pragma once

#include <chrono>
#include <memory>
#include <string>

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
};

/**
 * Camera providers that are services on a D-Bus. A bus that is not there counts as no provider; it is looked
 * for again at every `getService`. When the bus goes away every provider on it has died.
 */
class DBusCameraProviders final : public ICameraProviders {
 public:
  explicit DBusCameraProviders(const DBusOptions& options);
  /** Providers that are still held stay valid: calls on them fail. */
  ~DBusCameraProviders() override;

  std::shared_ptr<IQuilCameraProvider> getService(const std::string& instance) override;

 private:
  class Provider;

  std::shared_ptr<DBusConnection> livingConnection();

  const DBusOptions mOptions;
  Mutex mMutex;
  std::shared_ptr<DBusConnection> mConnection PR_GUARDED_BY(mMutex);
  bool mAbsenceSaid PR_GUARDED_BY(mMutex) = false;
};

}  // namespace fyn::productionrules
