#include <exception>

#include "config/check/ConfigCheck.h"
#include "platform/DevicePlatform.h"
#include "platform/ServiceState.h"
#include "platform/VisionSettings.h"
#include "service/ProductionRulesServiceRunner.h"
#include "service/entry/HostSignals.h"
#include "service/entry/ServiceMain.h"

namespace {

constexpr const char* kTag = "productionRulesServiceMain";

/** The service passes over what it does not know. */
void tellFaults(const std::string& path, const std::optional<std::string>& configuration) {
  using namespace fyn::productionrules;
  if (!configuration) {
    PRB_LOGW(kTag, "there is no configuration file %s; the defaults hold", path.c_str());
    return;
  }
  for (const ConfigFault& fault : checkConfiguration(*configuration)) {
    PRB_LOGW(kTag, "%s:%d: %s", path.c_str(), fault.line, fault.text.c_str());
  }
}

/** Has the faults of each configuration told that is read, for as long as it lives: a host may run the
 * service more than once. */
class ToldFaults {
 public:
  ToldFaults() {
    mState.setFiles([read = mRead](const std::string& path) {
      std::optional<std::string> text = read(path);
      tellFaults(path, text);
      return text;
    });
  }
  ~ToldFaults() { mState.setFiles(mRead); }
  ToldFaults(const ToldFaults&) = delete;
  ToldFaults& operator=(const ToldFaults&) = delete;

 private:
  fyn::productionrules::ServiceState& mState = fyn::productionrules::ServiceState::current();
  const fyn::productionrules::TextFileReader mRead = mState.files();
};

void runOnChosenPlatform(const std::string& name, bool loadConfig) {
  using namespace fyn::productionrules;
  const DevicePlatform device = buildPlatform();
  const ToldFaults toldFaults;
  HostSignals host;
  runProductionRulesService(device.platform, name, loadConfig,
                            [&](BaseIPCService& service) { host.attach(service, device); });
}

}  // namespace

void productionRulesServiceMain(const char* name, bool loadConfig) {
  try {
    runOnChosenPlatform(name != nullptr ? name : "", loadConfig);
  } catch (const std::exception& fault) {
    // Nothing may be thrown through the C interface.
    PRB_LOGE(kTag, "%s: %s", kTag, fault.what());
  }
}
