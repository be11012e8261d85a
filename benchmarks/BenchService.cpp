#include "benchmarks/BenchService.h"

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "platform/SystemEnvironment.h"
#include "platform/VisionSettings.h"
#include "platform/embedded/InProcessCameraProviders.h"

namespace fyn::productionrules::bench {

class BenchService::Bus final : public com::quil::pubsub::IPubSubClient {
 public:
  void publish(const std::string& topic, const std::string& message) override {
    if (topic == "/PRBOut") {
      mScene = message;
    }
  }
  void advertise(const std::string& /*topic*/) override {}
  void subscribe(const std::string& /*topic*/, com::quil::pubsub::IPubSubListener& /*listener*/) override {}
  void close() override {}
  const std::string& scene() const { return mScene; }

 private:
  std::string mScene;
};

BenchService::BenchService(FramingMode mode, bool withLog) : mBus(std::make_shared<Bus>()) {
  SystemEnvironment::setClock(&mTime);
  SystemEnvironment::setLog(&mLog);
  VisionSettings::setLogCeiling(withLog ? VisionSettings::kDebugLevel : 0);
  FynCamerasConfig::dispose();
  PrConfig config;
  config.framingMode = static_cast<std::int32_t>(mode);
  PrConfig::set(config);

  Platform platform;
  platform.bus = mBus;
  platform.providers = std::make_shared<InProcessCameraProviders>();
  platform.tasks = std::shared_ptr<DelayedTasks>(&mTime, [](DelayedTasks*) {});
  mService = std::make_unique<ProductionRuleIPCService>(platform, "prServ");
  mService->init();
  mService->process("/camera", R"({"fynCamId":0})");
}

BenchService::~BenchService() {
  mService.reset();
  SystemEnvironment::reset();
  VisionSettings::setLogCeiling(VisionSettings::kDebugLevel);
}

const std::string& BenchService::lastScene() const {
  return mBus->scene();
}

}  // namespace fyn::productionrules::bench
