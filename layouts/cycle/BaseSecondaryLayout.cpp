#include "layouts/cycle/BaseSecondaryLayout.h"

#include <algorithm>

#include "config/PrConfig.h"
#include "platform/VisionSettings.h"

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

bool BaseSecondaryLayout::refusesEmptyPicture(const std::shared_ptr<Layout>& layout) {
  if (layout == nullptr || PrConfig::get().fpBeta1Enabled || layout->frames.empty() ||
      !std::all_of(layout->frames.begin(), layout->frames.end(),
                   [this](const Frame& frame) { return showsNothing(frame); })) {
    return false;
  }
  PRB_LOGE(getTag(), "%s the layout shows nothing here, the picture before it stays", "applySecondaryLayout");
  return true;
}

// The view is made on this copy; the layout's own frames get theirs when it is put on screen. The type NONE
// is that of the entry with which a primary says that it cuts nothing from this camera: no fault.
bool BaseSecondaryLayout::showsNothing(Frame frame) {
  switch (frame.frameType) {
    case FramingType::ROOM:
    case FramingType::GROUP:
    case FramingType::PARTIAL_GROUP:
    case FramingType::NONE:
      return false;
    case FramingType::SUBSET_SPEAKER:
    case FramingType::HEAD:
    case FramingType::PROXIMITY:
      updateFrameView(frame);
      break;
    default:
      calculateRuleOfThirdFor(frame);
      break;
  }
  return isZeroRect(frame.source);
}

bool BaseSecondaryLayout::applyLayout(const SecondaryLayout& /*layout*/) {
  return false;
}

}  // namespace fyn::productionrules
