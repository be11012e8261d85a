#include "layouts/BaseSecondaryLayout.h"

#include "config/PrConfig.h"

namespace fyn::productionrules {

const char* BaseSecondaryLayout::getTag() const {
  return "BaseSecondaryLayout";
}

bool BaseSecondaryLayout::applyingLayout(const std::shared_ptr<MLData>& /*mlData*/) {
  return false;
}

bool BaseSecondaryLayout::updateLayoutFraming() {
  return PrConfig::get().pfReframeOnSecondaryEnabled && BaseLayout::updateLayoutFraming();
}

Dimension BaseSecondaryLayout::getImageSize(const Frame& frame) {
  return frame.srcRef;
}

bool BaseSecondaryLayout::applyLayout(const SecondaryLayout& /*layout*/) {
  return false;
}

}  // namespace fyn::productionrules
