#include <prometheus/exposer.h>

#include <exception>

#include "platform/Backends.h"
#include "platform/VisionSettings.h"
#include "platform/linux/PlatformOptions.h"
#include "platform/linux/prometheus/ServiceMetrics.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "MetricsServer";

/** Answers on "/metrics" for as long as it lives. */
class MetricsServer {
 public:
  /** Throws an exception of the HTTP library when nobody may listen there. */
  MetricsServer(const std::string& address, const std::shared_ptr<const ServiceHealth>& health)
      : mMetrics(std::make_shared<ServiceMetrics>(health)),
        mServer({"listening_ports", address, "num_threads", "2", "request_timeout_ms", "5000"}) {
    mServer.RegisterCollectable(mMetrics);
  }

 private:
  const std::shared_ptr<ServiceMetrics> mMetrics;
  prometheus::Exposer mServer;
};

}  // namespace

const MetricsBackend::Maker kMakeMetrics =
    [](const PlatformOptions& options,
       const std::shared_ptr<const ServiceHealth>& health) -> std::shared_ptr<void> {
  const bool onlyPort = options.metrics.find(':') == std::string::npos;
  const std::string address = (onlyPort ? "127.0.0.1:" : "") + options.metrics;
  try {
    return std::make_shared<MetricsServer>(address, health);
  } catch (const std::exception& fault) {
    // A room needs its pictures more than somebody who counts them.
    PRB_LOGE(
        kTag,
        "nobody can ask for metrics: %s cannot be listened on; another program may do so, or the systemd "
        "unit may not let it (SocketBindAllow): %s",
        address.c_str(), fault.what());
    return nullptr;
  }
};

}  // namespace fyn::productionrules
