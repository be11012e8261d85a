#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/CameraProvider.h"
#include "platform/Mutex.h"

namespace fyn::productionrules {

/**
 * A camera provider inside the process, for tests and replays, which can die and fail when told to. Every
 * instance name answers the same provider. May be used from any thread; callbacks run on the caller's.
 */
class InProcessCameraProviders final : public ICameraProviders {
 public:
  /** `onScene` is told of every call of `setSceneJson`, also of those that fail. */
  explicit InProcessCameraProviders(std::function<void(const std::string& json)> onScene = {});
  ~InProcessCameraProviders() override;

  std::shared_ptr<IQuilCameraProvider> getService(const std::string& instance) override;

  void setAppearanceHandler(std::function<void()> appeared) override;

  /** A provider appears; it replaces a living one, which dies. */
  void up();

  /** Says that a provider has appeared. */
  void announce();

  /** The provider dies: whoever is linked to it is told before this returns, later calls on it fail. */
  void down();

  /** The next call of `setSceneJson` fails, whatever happens to the provider in between. */
  void failNextCall();

 private:
  class Provider;
  struct Calls;

  const std::shared_ptr<Calls> mCalls;
  Mutex mMutex;
  std::shared_ptr<Provider> mProvider PR_GUARDED_BY(mMutex);
  std::function<void()> mAppeared PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
