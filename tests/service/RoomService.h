#pragma once

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "platform/embedded/InProcessBus.h"
#include "platform/embedded/InProcessCameraProviders.h"
#include "service/ProductionRuleIPCService.h"
#include "tests/testing/NotingListener.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {

using Lines = std::vector<std::string>;

/** The service on a bus inside the test, with another client that talks to it and hears what it publishes. */
class RoomService {
 public:
  /** What is set before `start` is in force when the service is built. */
  explicit RoomService(int logLevel = 3) : environment(logLevel) {
    set("vendor.talkertracking.flag", "1");
    platform.providers = providers;
    platform.tasks = std::shared_ptr<DelayedTasks>(&environment.time, [](DelayedTasks*) {});
    platform.standardOutput = &printed;
    platform.openDump = [this](const std::string& path) -> std::unique_ptr<std::ostream> {
      dumpPath = path;
      return std::make_unique<std::ostream>(dumpOpens ? &dump : nullptr);
    };
  }

  void set(const std::string& key, const std::string& value) { environment.properties.set(key, value); }
  void configure(const std::string& text) { environment.files[configurationPath()] = text; }

  void start() {
    PrConfig::load(configurationPath());
    platform.bus = bus.connect();
    service = std::make_unique<ProductionRuleIPCService>(platform, "test");
    for (const char* const topic :
         {"/PRBOut", "/PRBOutDebug", "/PRBOutSecondary", "/TimerDebug", "/PeopleCount", "/ForwardMessage",
          "/ctl-passthru-remote", "/ctl/tracking-mode", "/PRBDecisions"}) {
      peer->subscribe(topic, listener);
    }
    service->init();
    take();
  }

  /** Publishes a message and lets the service handle what has reached it. */
  void send(const std::string& topic, const std::string& text) {
    peer->publish(topic, text);
    service->handlePending();
  }
  void send(const Scene& scene) { send("/ICDOut", scene.text()); }

  /** Hands a message over even when the service has not subscribed to its topic. */
  void handle(const std::string& topic, const std::string& text) {
    service->onMessage(topic, text);
    service->handlePending();
  }

  /** The log since the last call. */
  Lines take() { return environment.log.take(); }

  Lines heard() { return listener.take(); }

  /** The topics heard since the last call. */
  Lines heardTopics() {
    Lines topics;
    for (const std::string& message : heard()) {
      topics.push_back(message.substr(0, message.find(' ')));
    }
    return topics;
  }

  /** Everything that a message may change, as text. */
  std::string state() const {
    return service->trackingMode().getDebugDataInJson() + FynCamerasConfig::get().str() +
           std::to_string(static_cast<int>(service->framingMode())) +
           std::to_string(static_cast<int>(service->operatingMode()));
  }

  TestEnvironment environment;
  InProcessBus bus;
  NotingListener listener;
  std::shared_ptr<com::quil::pubsub::IPubSubClient> peer = bus.connect();
  Lines scenes;
  std::shared_ptr<InProcessCameraProviders> providers =
      std::make_shared<InProcessCameraProviders>([this](const std::string& json) { scenes.push_back(json); });
  std::ostringstream printed;
  std::stringbuf dump;
  bool dumpOpens = true;
  std::string dumpPath;
  Platform platform;
  std::unique_ptr<ProductionRuleIPCService> service;
};

}  // namespace fyn::productionrules::testing
