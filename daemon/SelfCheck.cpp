#include "daemon/SelfCheck.h"

#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>

#include "config/check/ConfigCheck.h"
#include "platform/LogText.h"
#include "platform/Mutex.h"
#include "platform/ServiceState.h"
#include "platform/TextFile.h"
#include "platform/linux/BackendTables.h"

namespace fyn::productionrules {

namespace {

constexpr std::chrono::seconds kBusPatience{5};

/** What a backend says is wrong, and whether the bus is ready: the bus says both on a thread of its own. */
class Witness final : public LogSink {
 public:
  void write(LogPriority priority, const char* /*tag*/, const char* text) override {
    if (priority >= LogPriority::warning) {
      const MutexLock lock(mMutex);
      mFault = cleanLogText(text);
      mChanged.notifyAll();
    }
  }

  void noteReady() {
    const MutexLock lock(mMutex);
    mReady = true;
    mChanged.notifyAll();
  }

  /** What was said since the last call; empty for nothing. */
  std::string takeFault() {
    const MutexLock lock(mMutex);
    return std::exchange(mFault, {});
  }

  /** Until the bus is ready or something is wrong. */
  bool waitForBus() {
    MutexLock lock(mMutex);
    mChanged.waitFor(lock, kBusPatience, [this]() PR_REQUIRES(mMutex) { return mReady || !mFault.empty(); });
    return mReady;
  }

 private:
  Mutex mMutex;
  ConditionVariable mChanged;
  bool mReady PR_GUARDED_BY(mMutex) = false;
  std::string mFault PR_GUARDED_BY(mMutex);
};

class DeafListener final : public com::quil::pubsub::IPubSubListener {
 public:
  void onMessage(const std::string& /*topic*/, const std::string& /*message*/) override {}
};

/** Why it cannot be used; empty when it can. */
std::string configurationFault(const std::string& path) {
  try {
    const std::optional<std::string> text = readRegularFile(path);
    if (!text) {
      return "there is no such file";
    }
    const std::vector<ConfigFault> faults = checkConfiguration(*text);
    if (faults.empty()) {
      return {};
    }
    return "line " + std::to_string(faults.front().line) + ": " + faults.front().text +
           (faults.size() == 1 ? "" : "; 'prb config check' lists all " + std::to_string(faults.size()));
  } catch (const std::exception& fault) {
    return fault.what();
  }
}

std::string busFault(const PlatformOptions& options, const std::shared_ptr<Witness>& witness) {
  const BuiltBus bus = busBackend(options.bus).make(options, nullptr);
  DeafListener listener;
  bus.client->subscribe("/ctl", listener);
  bus.whenReady([witness] { witness->noteReady(); });
  const bool ready = witness->waitForBus();
  bus.client->close();
  const std::string fault = witness->takeFault();
  return ready ? "" : fault.empty() ? "no answer within 5 seconds" : fault;
}

std::string providerFault(const PlatformOptions& options, Witness& witness) {
  const std::shared_ptr<ICameraProviders> providers = providersBackend(options.provider).make(options);
  if (options.provider == "none" || providers->getService("default") != nullptr) {
    return {};
  }
  const std::string fault = witness.takeFault();
  return fault.empty() ? "nobody has the name fyn.productionrules.CameraProvider there" : fault;
}

}  // namespace

bool checkInstallation(const std::string& configuration, const PlatformOptions& options, std::ostream& out) {
  const auto witness = std::make_shared<Witness>();
  ServiceState::current().setLog(witness);
  bool good = true;
  const auto tell = [&](const char* part, const std::string& which, const std::string& fault) {
    out << part << ": " << which << ": " << (fault.empty() ? "ok" : "FAULT: " + fault) << std::endl;
    good = good && fault.empty();
  };
  tell("configuration", configuration, configurationFault(configuration));
  const std::shared_ptr<PropertyStore> store = propertiesBackend(options.properties).make(options);
  store->get("vendor.fyndebug.enabled");
  tell("properties", options.properties.empty() ? "the machine's file" : options.properties,
       witness->takeFault());
  tell("bus", options.bus, busFault(options, witness));
  tell("camera provider", options.provider, providerFault(options, *witness));
  return good;
}

}  // namespace fyn::productionrules
