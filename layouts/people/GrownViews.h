#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "layouts/people/TileView.h"

namespace fyn::productionrules {

/** The views of tiles that were grown last: of heads that rest the same ones are asked for in every result.
 */
class GrownViews {
 public:
  /** `view`, grown. */
  TileView grown(const TileView& view, const TileGrowth& growth);

 private:
  struct Growing {
    TileView from;
    TileGrowth growth;
    TileView to;
  };

  /** More than the tiles of a picture, so that few share a place. */
  static constexpr std::size_t kPlaces = 32;

  std::array<std::optional<Growing>, kPlaces> mLatest;
};

}  // namespace fyn::productionrules
