#include "platform/linux/PlatformFactory.h"

#include <array>
#include <iostream>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/MemoryPropertyStore.h"
#include "platform/StderrLog.h"
#include "platform/SystemEnvironment.h"
#include "platform/embedded/InProcessBus.h"
#include "platform/embedded/ThreadDelayedTasks.h"
#if PR_HAVE_MQTT
#include "platform/linux/mqtt/MqttPubSubClient.h"
#endif
#if PR_HAVE_DBUS
#include "platform/linux/dbus/DBusCameraProviders.h"
#endif
#if PR_HAVE_SQLITE
#include "platform/linux/sqlite/SqlitePropertyStore.h"
#endif
#if PR_HAVE_JOURNAL
#include "platform/linux/journal/JournalLog.h"
#endif
#if PR_HAVE_ANDROID_LOG
#include "platform/android/AndroidLogSink.h"
#endif

namespace fyn::productionrules {

namespace {

struct BackendRow {
  PlatformBackend backend;
  bool present;
  const char* name;
};

constexpr std::array<BackendRow, 5> kBackends{{
    {PlatformBackend::mqtt, PR_HAVE_MQTT != 0, "MQTT bus"},
    {PlatformBackend::dbus, PR_HAVE_DBUS != 0, "D-Bus camera provider"},
    {PlatformBackend::sqlite, PR_HAVE_SQLITE != 0, "property file"},
    {PlatformBackend::journal, PR_HAVE_JOURNAL != 0, "journal"},
    {PlatformBackend::androidLog, PR_HAVE_ANDROID_LOG != 0, "Android log"},
}};

/** For what the whole process reads: never destroyed, because a detached thread may read it while the process
 * ends. */
template <typename Object>
Object* keep(std::unique_ptr<Object> object) {
  static std::mutex mutex;
  static auto* const kept = new std::vector<std::unique_ptr<Object>>();
  const std::lock_guard lock(mutex);
  kept->push_back(std::move(object));
  return kept->back().get();
}

class NoCameraProviders final : public ICameraProviders {
 public:
  std::shared_ptr<IQuilCameraProvider> getService(const std::string& /*instance*/) override {
    return nullptr;
  }
};

std::unique_ptr<LogSink> makeLog(const std::string& kind) {
#if PR_HAVE_ANDROID_LOG
  if (kind == "android") {
    return std::make_unique<AndroidLogSink>();
  }
#endif
#if PR_HAVE_JOURNAL
  if (kind == "journal" || (kind == "auto" && JournalLog::isStandardError())) {
    return std::make_unique<JournalLog>();
  }
#endif
  return std::make_unique<StderrLog>();
}

std::unique_ptr<PropertyStore> makeProperties(const std::string& path) {
#if PR_HAVE_SQLITE
  if (path != "memory") {
    return std::make_unique<SqlitePropertyStore>(path.empty() ? SqlitePropertyStore::defaultPath() : path);
  }
#endif
  return std::make_unique<MemoryPropertyStore>();
}

std::shared_ptr<ICameraProviders> makeProviders([[maybe_unused]] const std::string& provider) {
#if PR_HAVE_DBUS
  if (provider != "none") {
    DBusOptions options;
    options.bus = provider.substr(std::string("dbus:").size());
    return std::make_shared<DBusCameraProviders>(options);
  }
#endif
  return std::make_shared<NoCameraProviders>();
}

#if PR_HAVE_MQTT
std::shared_ptr<MqttPubSubClient> makeMqttClient(const PlatformOptions& options) {
  MqttOptions mqtt;
  mqtt.address = parseBusAddress(options.bus);
  mqtt.user = options.mqttUser;
  mqtt.password = options.password();
  mqtt.caFile = options.mqttCaFile;
  mqtt.certificateFile = options.mqttCertificateFile;
  mqtt.keyFile = options.mqttKeyFile;
  return std::make_shared<MqttPubSubClient>(mqtt);
}
#endif

class ChosenPlatform final : public BuiltPlatform {
 public:
  explicit ChosenPlatform(const PlatformOptions& options) {
    SystemEnvironment::setLog(keep(makeLog(options.log)));
    SystemEnvironment::setProperties(keep(makeProperties(options.properties)));
    mPlatform.bus = makeBus(options);
    mPlatform.providers = makeProviders(options.provider);
    mPlatform.tasks = std::make_shared<ThreadDelayedTasks>();
    mPlatform.standardOutput = &std::cout;
  }

  const Platform& platform() const override { return mPlatform; }

  void whenBusReady(std::function<void()> callback) override {
#if PR_HAVE_MQTT
    if (mMqtt) {
      mMqtt->whenSubscribed(std::move(callback));
      return;
    }
#endif
    callback();
  }

 private:
  std::shared_ptr<com::quil::pubsub::IPubSubClient> makeBus(const PlatformOptions& options) {
#if PR_HAVE_MQTT
    if (options.bus != "embedded") {
      mMqtt = makeMqttClient(options);
      return mMqtt;
    }
    static_cast<void>(options);
#endif
    static auto* const bus = new InProcessBus();
    return bus->connect();
  }

  Platform mPlatform;
#if PR_HAVE_MQTT
  std::shared_ptr<MqttPubSubClient> mMqtt;
#endif
};

}  // namespace

void requireBackend(PlatformBackend backend) {
  for (const BackendRow& row : kBackends) {
    if (row.backend == backend && !row.present) {
      throw std::invalid_argument(std::string("this build has no ") + row.name);
    }
  }
}

std::unique_ptr<BuiltPlatform> buildPlatform(const PlatformOptions& options) {
  options.validate();
  return std::make_unique<ChosenPlatform>(options);
}

}  // namespace fyn::productionrules
