#include "layouts/streams/MultiStreamGroupFramingLayout.h"

namespace fyn::productionrules {

const char* MultiStreamGroupFramingLayout::getTag() const {
  return "MultiStreamGroupFramingLayout";
}

std::shared_ptr<Layout> MultiStreamGroupFramingLayout::createLayout(const std::shared_ptr<MLData>& mlData) {
  const auto people = static_cast<int>(mlData->getHeads().size());
  std::shared_ptr<Layout> kept = keepEverybody(getLayoutTypeForGroupFrame(people), "");
  return kept != nullptr ? kept : GroupFramingLayout::createLayout(mlData);
}

}  // namespace fyn::productionrules
