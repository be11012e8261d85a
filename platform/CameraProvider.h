#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace fyn::productionrules {

class IQuilCameraProvider;

/** Told when a provider dies. */
class DeathRecipient {
 public:
  virtual ~DeathRecipient() = default;

  /** Called once per registration, on any thread. `cookie` is that of the registration. */
  virtual void serviceDied(std::uint64_t cookie, const std::weak_ptr<IQuilCameraProvider>& who) = 0;
};

/** A handle of the camera provider service, which composes the output picture. Called from any thread. */
class IQuilCameraProvider {
 public:
  virtual ~IQuilCameraProvider() = default;

  /**
   * Hands over a scene document. True when the transport delivered it; false when the provider has died, does
   * not answer within the backend's time limit, or refuses. Never blocks longer than that limit.
   */
  virtual bool setSceneJson(const std::string& json) = 0;

  /** Registers for the provider's death; false when that is impossible (it may have died already). */
  virtual bool linkToDeath(const std::shared_ptr<DeathRecipient>& recipient, std::uint64_t cookie) = 0;

  /** Takes a registration back: when it returns the recipient is not called any more. */
  virtual void unlinkToDeath(const std::shared_ptr<DeathRecipient>& recipient) = 0;
};

/** Finds camera providers. */
class ICameraProviders {
 public:
  virtual ~ICameraProviders() = default;

  /** The provider `instance` ("default"), without waiting for it; empty when there is none now. */
  virtual std::shared_ptr<IQuilCameraProvider> getService(const std::string& instance) = 0;

  /**
   * `appeared` is called, on any thread, whenever a provider "default" appears from now on. Set once, before
   * the first `getService`. It returns at once and holds nobody alive. A platform that cannot tell never
   * calls it.
   */
  virtual void setAppearanceHandler(std::function<void()> /*appeared*/) {}
};

}  // namespace fyn::productionrules
