#include "geometry/GroupLayout.h"

#include <utility>

#include "platform/VisionSettings.h"

namespace fyn::productionrules {

void constructGroupLayout(const std::vector<std::shared_ptr<FynHead>>& heads, std::shared_ptr<Layout>& layout,
                          std::uint32_t camId) {
  if (layout == nullptr) {
    PRB_LOGW("FramingUtil", "%s faces: %d layout: %x layout is null returning", __func__,
             static_cast<int>(heads.size()), 0U);
    return;
  }
  layout->frames.clear();
  Frame frame;
  frame.fynCamId = camId;
  // Mostly beside the one before, as people come by number.
  auto headPlace = frame.heads.end();
  auto personPlace = frame.fynHeads.end();
  for (const std::shared_ptr<FynHead>& person : heads) {
    const std::shared_ptr<Head> head = person->getHead(camId);
    if (head != nullptr) {
      headPlace = frame.heads.insert(headPlace, head->id);
      personPlace = frame.fynHeads.insert(personPlace, person->id);
    }
  }
  frame.headPositionTimer.expired = true;
  frame.frameType = layout->layoutType;
  layout->frames.push_back(std::move(frame));
}

}  // namespace fyn::productionrules
