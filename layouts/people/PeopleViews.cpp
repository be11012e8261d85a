#include "layouts/people/PeopleViews.h"

#include <algorithm>

#include "config/PrConfig.h"
#include "geometry/ProximityRect.h"
#include "layouts/people/PeopleUnits.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

bool hasTiles(const Layout& layout) {
  return layout.layoutType == FramingType::HEAD || layout.layoutType == FramingType::PROXIMITY;
}

std::optional<Rect> neighboursBaseRect(const Frame& frame, const Rect& box) {
  if (frame.frameType != FramingType::PROXIMITY || !PrConfig::get().proximitySquareFeature) {
    return std::nullopt;
  }
  return getProximitySquare(box, getCameraLensModelDimension(static_cast<int>(frame.fynCamId)));
}

bool showsWholeHeads(const Frame& frame, const PeopleMap& people, const Dimension& image) {
  const Rect& view = frame.source;
  return std::all_of(frame.fynHeads.begin(), frame.fynHeads.end(), [&](std::int64_t id) {
    const auto person = people.find(id);
    const Head* const head = person != people.end() ? person->second->findHead(frame.fynCamId) : nullptr;
    if (head == nullptr || !isShowable(head, image)) {
      return false;
    }
    const Rect& box = head->bbox;
    return view.left <= std::max(box.left, 0) && view.top <= std::max(box.top, 0) &&
           view.right >= std::min(box.right, image.width) &&
           view.bottom >= std::min(box.bottom, image.height);
  });
}

bool hasUnshowableHead(const Frame& frame, const PeopleMap& people, const Dimension& image) {
  return std::any_of(frame.fynHeads.begin(), frame.fynHeads.end(), [&](std::int64_t id) {
    const auto person = people.find(id);
    return person != people.end() && !isShowable(person->second->findHead(frame.fynCamId), image);
  });
}

}  // namespace fyn::productionrules
