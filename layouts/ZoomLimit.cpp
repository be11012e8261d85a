#include "layouts/ZoomLimit.h"

#include "config/PrConfig.h"

namespace fyn::productionrules {

unsigned groupZoomLimit() {
  const PrConfig& config = PrConfig::get();
  return config.gfZoomLimitEnabled ? static_cast<unsigned>(config.zoomInLimit) : 0;
}

}  // namespace fyn::productionrules
