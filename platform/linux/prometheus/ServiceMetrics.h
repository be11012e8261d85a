#pragma once

#include <prometheus/collectable.h>
#include <prometheus/metric_family.h>

#include <memory>
#include <vector>

#include "platform/ServiceHealth.h"

namespace fyn::productionrules {

/** How the service is doing, as Prometheus asks for it. Times are in seconds. */
class ServiceMetrics final : public prometheus::Collectable {
 public:
  explicit ServiceMetrics(std::shared_ptr<const ServiceHealth> health);

  std::vector<prometheus::MetricFamily> Collect() const override;

 private:
  const std::shared_ptr<const ServiceHealth> mHealth;
};

}  // namespace fyn::productionrules
