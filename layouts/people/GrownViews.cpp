#include "layouts/people/GrownViews.h"

namespace fyn::productionrules {

TileView GrownViews::grown(const TileView& view, const TileGrowth& growth) {
  // So that heads beside and below one another have places of their own.
  const auto mixed =
      static_cast<std::uint32_t>(view.box().left) + 5 * static_cast<std::uint32_t>(view.box().top);
  std::optional<Growing>& latest = mLatest[mixed % kPlaces];
  if (!latest || !(latest->growth == growth) || !latest->from.isSameAs(view)) {
    TileView to = view;
    to.grow(growth);
    to.view();
    latest = Growing{view, growth, to};
  }
  return latest->to;
}

}  // namespace fyn::productionrules
