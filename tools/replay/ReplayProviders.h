#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/CameraProvider.h"
#include "tools/recording/RecordingEvent.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules {

/** The camera provider of a replay: it appears, dies and fails as the recording says, and reports every call.
 */
class ReplayProviders final : public ICameraProviders {
 public:
  explicit ReplayProviders(ReplayObserver& observer) : mObserver(observer) {}

  std::shared_ptr<IQuilCameraProvider> getService(const std::string& instance) override;
  void setAppearanceHandler(std::function<void()> appeared) override { mAppeared = std::move(appeared); }

  void apply(ProviderChange change);

 private:
  class Provider;

  bool takeFailure();
  void ensureUp();

  ReplayObserver& mObserver;
  std::shared_ptr<Provider> mProvider;
  std::function<void()> mAppeared;
  /** The next call fails, whatever happens to the provider until then. */
  bool mFailNextCall = false;
};

}  // namespace fyn::productionrules
