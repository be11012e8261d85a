#include "layouts/speaker/SpeakerFramingLayoutBuilder.h"

#include <unordered_set>

#include "geometry/GroupFrame.h"
#include "geometry/GroupLayout.h"
#include "geometry/Proximity.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

std::shared_ptr<Layout> SpeakerFramingLayoutBuilder::build(const SpeakerScene& scene) const {
  std::vector<std::shared_ptr<FynHead>> members;
  std::unordered_set<std::shared_ptr<FynHead>> taken;
  int units = 0;
  for (const std::shared_ptr<FynHead>& speaker : scene.speakers) {
    if (!taken.insert(speaker).second) {
      continue;
    }
    ++units;
    members.push_back(speaker);
    const auto neighbours = getProximityHeads(speaker, scene.inView, taken, false, scene.camId);
    members.insert(members.end(), neighbours.begin(), neighbours.end());
  }
  if (units > 1) {
    return makeLayout(FramingType::SUBSET_SPEAKER, members, scene.camId, "several speak");
  }
  if (members.size() > 1) {
    return makeLayout(FramingType::PROXIMITY, members, scene.camId, "a speaker with neighbours");
  }
  return makeLayout(FramingType::HEAD, members, scene.camId, "a speaker alone");
}

std::shared_ptr<Layout> SpeakerFramingLayoutBuilder::makeLayout(
    FramingType type, const std::vector<std::shared_ptr<FynHead>>& members, std::uint32_t camId,
    const char* reason) {
  auto layout = std::make_shared<Layout>();
  layout->reason = reason;
  layout->layoutType = type;
  constructGroupLayout(members, layout, camId);
  return layout;
}

void SpeakerFramingLayoutBuilder::calculateGroupFraming(Frame& frame, const std::vector<Rect>& heads,
                                                        unsigned zoomLimit) {
  GroupFrame::updateGroupFrameLayout(heads, frame, "SpeakerFramingLayoutBuilder::calculateGroupFraming",
                                     getCameraLensModelDimension(static_cast<int>(frame.fynCamId)),
                                     static_cast<int>(zoomLimit));
}

}  // namespace fyn::productionrules
