#include "layouts/cycle/ZoomLimit.h"

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

unsigned groupZoomLimit() {
  const PrConfig& config = PrConfig::get();
  return config.gfZoomLimitEnabled ? static_cast<unsigned>(config.zoomInLimit) : 0;
}

unsigned speakerZoomLimit() {
  const PrConfig& config = PrConfig::get();
  const bool unlimited = FynCamerasConfig::get().getCameraType() == kUnlimitedZoomCameraType;
  return config.sfZoomLimitEnabled && !unlimited ? static_cast<unsigned>(config.zoomInLimit) : 0;
}

}  // namespace fyn::productionrules
