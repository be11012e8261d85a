#include "tests/layouts/PictureFaults.h"

#include <algorithm>

#include "model/FynCamerasConfig.h"

namespace fyn::productionrules::testing {

namespace {

Dimension imageOf(const Frame& frame) {
  return getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
}

bool overlap(const Rect& a, const Rect& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool isWithin(const Rect& rect, const Dimension& size) {
  return 0 <= rect.left && rect.left < rect.right && rect.right <= size.width && 0 <= rect.top &&
         rect.top < rect.bottom && rect.bottom <= size.height;
}

}  // namespace

Faults tilingFaults(const Layout& layout) {
  Faults faults;
  std::int64_t area = 0;
  for (const Frame& frame : layout.frames) {
    if (!isWithin(frame.dest, kOutputSize)) {
      faults.push_back("the tile " + RectToString(frame.dest) + " leaves the output");
    }
    area += std::int64_t{frame.dest.right - frame.dest.left} * (frame.dest.bottom - frame.dest.top);
    for (const Frame* other = layout.frames.data(); other != &frame; ++other) {
      if (overlap(frame.dest, other->dest)) {
        faults.push_back("the tile " + RectToString(frame.dest) + " overlaps " + RectToString(other->dest));
      }
    }
  }
  if (area != std::int64_t{kOutputSize.width} * kOutputSize.height) {
    faults.push_back("the tiles cover " + std::to_string(area) + " pixels");
  }
  return faults;
}

Faults viewFaults(const Layout& layout) {
  Faults faults;
  for (const Frame& frame : layout.frames) {
    if (frame.frameType != FramingType::ROOM && frame.frameType != FramingType::NONE &&
        !isWithin(frame.source, imageOf(frame))) {
      faults.push_back("the view " + RectToString(frame.source) + " leaves the image " +
                       imageOf(frame).str());
    }
  }
  return faults;
}

Faults doubleFaults(const Layout& layout) {
  Faults faults;
  std::set<std::int64_t> shown;
  for (const Frame& frame : layout.frames) {
    for (const std::int64_t id : frame.fynHeads) {
      if (!shown.insert(id).second) {
        faults.push_back("person " + std::to_string(id) + " is in two frames");
      }
    }
  }
  return faults;
}

Faults cutFaults(const Frame& frame, const PeopleMap& people) {
  Faults faults;
  const Dimension image = imageOf(frame);
  for (const std::int64_t id : frame.fynHeads) {
    const auto person = people.find(id);
    const Head* const head = person != people.end() ? person->second->findHead(frame.fynCamId) : nullptr;
    if (head == nullptr) {
      continue;
    }
    const Rect& box = head->bbox;
    if (frame.source.left > std::max(box.left, 0) || frame.source.top > std::max(box.top, 0) ||
        frame.source.right < std::min(box.right, image.width) ||
        frame.source.bottom < std::min(box.bottom, image.height)) {
      faults.push_back(layoutToString(frame.frameType) + ": the view " + RectToString(frame.source) +
                       " cuts person " + std::to_string(id) + " at " + RectToString(box));
    }
  }
  return faults;
}

bool reachesOutOfTheImage(const Frame& frame, const PeopleMap& people) {
  const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
  return std::any_of(frame.fynHeads.begin(), frame.fynHeads.end(), [&](std::int64_t id) {
    const auto person = people.find(id);
    const Head* const head = person != people.end() ? person->second->findHead(frame.fynCamId) : nullptr;
    return head != nullptr && (head->bbox.left < 0 || head->bbox.top < 0 || head->bbox.right > image.width ||
                               head->bbox.bottom > image.height);
  });
}

}  // namespace fyn::productionrules::testing
