#include "layouts/speaker/SSBLayoutBuilder.h"

#include <algorithm>

#include "config/PrConfig.h"
#include "geometry/RectMath.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

using Person = std::shared_ptr<FynHead>;

std::int32_t moved(std::int32_t edge, std::int64_t by, std::int32_t limit) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(edge + by, 0, std::max(limit, 0)));
}

bool holds(const Rect& box, const Rect& head) {
  return box.left <= head.left && box.top <= head.top && box.right >= head.right && box.bottom >= head.bottom;
}

/** Pixels of the frame that group framing would place around these persons; exact below 2^53. */
double groupFrameArea(const std::vector<Person>& persons, const SpeakerScene& scene) {
  std::vector<Rect> heads;
  heads.reserve(persons.size());
  for (const Person& person : persons) {
    heads.push_back(person->findHead(scene.camId)->bbox);
  }
  Frame frame;
  frame.fynCamId = scene.camId;
  SpeakerFramingLayoutBuilder::calculateGroupFraming(frame, heads, scene.zoomLimit);
  return double{1} * widthOf(frame.source) * heightOf(frame.source);
}

std::vector<Person> selectMembers(const SpeakerScene& scene) {
  const Dimension image = getCameraLensModelDimension(static_cast<int>(scene.camId));
  Rect selection = SSBLayoutBuilder::selectionBox(*scene.speakers.front()->findHead(scene.camId), image);
  for (const Person& speaker : scene.speakers) {
    selection = enclosing(selection, SSBLayoutBuilder::selectionBox(*speaker->findHead(scene.camId), image));
  }
  std::vector<Person> members;
  for (const Person& person : scene.inView) {
    const Head& head = *person->findHead(scene.camId);
    // A speaker belongs to the picture even when the box that came with the head lies elsewhere.
    const bool speaks =
        std::find(scene.speakers.begin(), scene.speakers.end(), person) != scene.speakers.end();
    if (speaks || holds(selection, head.bbox)) {
      members.push_back(person);
    }
  }
  return members;
}

}  // namespace

std::shared_ptr<Layout> SSBLayoutBuilder::build(const SpeakerScene& scene) const {
  const std::vector<Person> members = selectMembers(scene);
  if (members.size() == scene.inView.size()) {
    return makeLayout(FramingType::GROUP, scene.inView, scene.camId, "the selection holds everybody");
  }
  if (groupFrameArea(members, scene) * 100 >=
      groupFrameArea(scene.inView, scene) * PrConfig::get().ss2GroupCoverage) {
    return makeLayout(FramingType::GROUP, scene.inView, scene.camId, "the selection covers the group");
  }
  return makeLayout(FramingType::SUBSET_SPEAKER, members, scene.camId, "the speakers' selection");
}

Rect SSBLayoutBuilder::selectionBox(const Head& head, const Dimension& image) {
  const PrConfig& config = PrConfig::get();
  const bool given = !isZeroRect(head.ssb);
  const Rect& box = given ? head.ssb : head.bbox;
  const std::int64_t sides = given ? 0 : config.ssbLrSize;
  const std::int64_t above = given ? 0 : config.ssbTopSize;
  const std::int64_t below = given ? 0 : config.ssbBottomSize;
  return Rect{moved(box.left, -sides, image.width), moved(box.top, -above, image.height),
              moved(box.right, sides, image.width), moved(box.bottom, below, image.height)};
}

}  // namespace fyn::productionrules
