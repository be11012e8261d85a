#include "benchmarks/BenchService.h"

#include "config/PrConfig.h"
#include "platform/embedded/InProcessCameraProviders.h"

namespace fyn::productionrules::bench {

namespace {

// Tiles are the dearest picture.
constexpr std::int32_t kMostTiles = 8;

class NullLog final : public LogSink {
 public:
  void write(LogPriority /*priority*/, const char* /*tag*/, const char* /*text*/) override {}
};

}  // namespace

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

BenchService::BenchService(const Room& room) : mBus(std::make_shared<Bus>()) {
  ServiceState::current().setClock(mTime);
  ServiceState::current().setLog(std::make_shared<NullLog>(), room.withLog ? LogLevels::kDebugLevel : 0);
  PrConfig config;
  config.framingMode = static_cast<std::int32_t>(room.mode);
  config.steadyFramingEnabled = room.steadyFraming;
  config.compositeModeMaxPeople = kMostTiles;
  PrConfig::set(config);

  Platform platform;
  platform.bus = mBus;
  platform.providers = std::make_shared<InProcessCameraProviders>();
  platform.tasks = std::shared_ptr<DelayedTasks>(mTime.get(), [](DelayedTasks*) {});
  mService = std::make_unique<ProductionRuleIPCService>(platform, "prServ");
  mService->init();
  mService->process("/camera", R"({"fynCamId":0})");
}

const std::string& BenchService::lastScene() const {
  return mBus->scene();
}

}  // namespace fyn::productionrules::bench
