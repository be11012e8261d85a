#include "layouts/people/TileRow.h"

#include <algorithm>
#include <vector>

#include "geometry/RectMath.h"

namespace fyn::productionrules {

namespace {

constexpr double kAlike = 1.2;

// Heights of heads in camera pixels; 0 where nobody has a head.
struct HeadHeights {
  std::int32_t least = 0;
  std::int32_t most = 0;
};

HeadHeights headHeights(const Frame& tile, const PeopleMap& people) {
  HeadHeights heights;
  for (const std::int64_t id : tile.fynHeads) {
    const auto person = people.find(id);
    const Head* const head = person != people.end() ? person->second->findHead(tile.fynCamId) : nullptr;
    const std::int32_t height = head != nullptr ? heightOf(head->bbox) : 0;
    if (height > 0) {
      heights.least = heights.least == 0 ? height : std::min(heights.least, height);
      heights.most = std::max(heights.most, height);
    }
  }
  return heights;
}

bool areBesideOneAnother(const Frame& a, const Frame& b) {
  return &a != &b && a.dest.top == b.dest.top && a.dest.bottom == b.dest.bottom;
}

}  // namespace

double viewHeightLikeRow(const Frame& tile, const Layout& layout, const PeopleMap& people) {
  const std::vector<Frame>& frames = layout.frames;
  if (std::none_of(frames.begin(), frames.end(), [&](const Frame& frame) { return &frame == &tile; })) {
    return 0;
  }
  // As shown, of the height of the row.
  double smallest = 0;
  for (const Frame& frame : frames) {
    if (areBesideOneAnother(frame, tile) && heightOf(frame.source) > 0) {
      const double shown = double{1} * headHeights(frame, people).least / heightOf(frame.source);
      smallest = smallest == 0 || (shown > 0 && shown < smallest) ? shown : smallest;
    }
  }
  return smallest > 0 ? headHeights(tile, people).most / (kAlike * smallest) : 0;
}

}  // namespace fyn::productionrules
