#include "layouts/people/PeopleTiles.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>

#include "geometry/RectMath.h"

namespace fyn::productionrules {

namespace {

constexpr double kMaxEnlargement = 2.5;

struct Tile {
  Rect dest;
  /** The shape for one person. */
  FrameLayout head;
  /** The shape for neighbours. */
  FrameLayout neighbours;
};

struct TileRow {
  /** One letter per unit, left to right: H one person, P neighbours, ? either. */
  std::string_view units;
  std::array<Tile, kMaxTiles> tiles;
};

constexpr FrameLayout kSingle = kFrameLayoutHeadSingle;
constexpr FrameLayout kSquare = kFrameLayoutHeadSquare;
constexpr FrameLayout kWide = kFrameLayoutHeadWide;
constexpr FrameLayout kNarrow = kFrameLayoutHeadColumnNarrow;
constexpr FrameLayout kHalf = kFrameLayoutHeadColumnHalf;
constexpr FrameLayout kProxNarrow = kFrameLayoutProximityColumnNarrow;
constexpr FrameLayout kProxHalf = kFrameLayoutProximityColumnHalf;
constexpr FrameLayout kProxWide = kFrameLayoutProximityColumnWide;
constexpr FrameLayout kProxSingle = kFrameLayoutProximitySingleWide;

// The first row that fits counts.
constexpr TileRow kTileRows[] = {
    {"?", {{{{0, 0, 1280, 720}, kSingle, kProxSingle}}}},

    {"HP", {{{{0, 0, 427, 720}, kNarrow, kProxWide}, {{427, 0, 1280, 720}, kNarrow, kProxWide}}}},
    {"PH", {{{{0, 0, 853, 720}, kNarrow, kProxWide}, {{853, 0, 1280, 720}, kNarrow, kProxWide}}}},
    {"??", {{{{0, 0, 640, 720}, kHalf, kProxHalf}, {{640, 0, 1280, 720}, kHalf, kProxHalf}}}},

    {"PHH",
     {{{{0, 0, 640, 720}, kWide, kProxHalf},
       {{640, 0, 1280, 360}, kWide, kProxHalf},
       {{640, 360, 1280, 720}, kWide, kProxHalf}}}},
    {"HHP",
     {{{{0, 0, 640, 360}, kWide, kProxHalf},
       {{0, 360, 640, 720}, kWide, kProxHalf},
       {{640, 0, 1280, 720}, kWide, kProxHalf}}}},
    {"HPH",
     {{{{0, 0, 320, 720}, kNarrow, kProxHalf},
       {{320, 0, 960, 720}, kNarrow, kProxHalf},
       {{960, 0, 1280, 720}, kNarrow, kProxHalf}}}},
    {"???",
     {{{{0, 0, 427, 720}, kNarrow, kProxNarrow},
       {{427, 0, 853, 720}, kNarrow, kProxNarrow},
       {{853, 0, 1280, 720}, kNarrow, kProxNarrow}}}},

    {"????",
     {{{{0, 0, 640, 360}, kWide, kProxSingle},
       {{640, 0, 1280, 360}, kWide, kProxSingle},
       {{0, 360, 640, 720}, kWide, kProxSingle},
       {{640, 360, 1280, 720}, kWide, kProxSingle}}}},

    {"?????",
     {{{{0, 0, 427, 360}, kSquare, kProxHalf},
       {{427, 0, 853, 360}, kSquare, kProxHalf},
       {{853, 0, 1280, 360}, kSquare, kProxHalf},
       {{0, 360, 640, 720}, kWide, kProxHalf},
       {{640, 360, 1280, 720}, kWide, kProxHalf}}}},

    {"??????",
     {{{{0, 0, 427, 360}, kSquare, kProxHalf},
       {{427, 0, 853, 360}, kSquare, kProxHalf},
       {{853, 0, 1280, 360}, kSquare, kProxHalf},
       {{0, 360, 427, 720}, kSquare, kProxHalf},
       {{427, 360, 853, 720}, kSquare, kProxHalf},
       {{853, 360, 1280, 720}, kSquare, kProxHalf}}}},

    {"???????",
     {{{{0, 0, 320, 360}, kSquare, kProxHalf},
       {{320, 0, 640, 360}, kSquare, kProxHalf},
       {{640, 0, 960, 360}, kSquare, kProxHalf},
       {{960, 0, 1280, 360}, kSquare, kProxHalf},
       {{0, 360, 427, 720}, kSquare, kProxHalf},
       {{427, 360, 853, 720}, kSquare, kProxHalf},
       {{853, 360, 1280, 720}, kSquare, kProxHalf}}}},

    {"????????",
     {{{{0, 0, 320, 360}, kSquare, kProxHalf},
       {{320, 0, 640, 360}, kSquare, kProxHalf},
       {{640, 0, 960, 360}, kSquare, kProxHalf},
       {{960, 0, 1280, 360}, kSquare, kProxHalf},
       {{0, 360, 320, 720}, kSquare, kProxHalf},
       {{320, 360, 640, 720}, kSquare, kProxHalf},
       {{640, 360, 960, 720}, kSquare, kProxHalf},
       {{960, 360, 1280, 720}, kSquare, kProxHalf}}}},
};

bool fits(std::string_view row, std::string_view units) {
  return std::equal(row.begin(), row.end(), units.begin(), units.end(),
                    [](char wanted, char unit) { return wanted == '?' || wanted == unit; });
}

bool isOfNeighbours(const Frame& frame) {
  return frame.frameType == FramingType::PROXIMITY;
}

/** The first tile of the row for these frames; null for none. */
const Tile* findTiles(const std::vector<Frame>& frames) {
  std::string units;
  for (const Frame& frame : frames) {
    units += isOfNeighbours(frame) ? 'P' : 'H';
  }
  const auto* const row = std::find_if(std::begin(kTileRows), std::end(kTileRows),
                                       [&](const TileRow& each) { return fits(each.units, units); });
  return row != std::end(kTileRows) ? row->tiles.data() : nullptr;
}

FrameLayout shapeIn(const Tile& tile, const Frame& frame) {
  return isOfNeighbours(frame) ? tile.neighbours : tile.head;
}

}  // namespace

bool hasTiles(const Layout& layout) {
  return layout.layoutType == FramingType::HEAD || layout.layoutType == FramingType::PROXIMITY;
}

void placeInTiles(Layout& layout) {
  const Tile* tile = findTiles(layout.frames);
  if (tile == nullptr) {
    return;
  }
  for (Frame& frame : layout.frames) {
    frame.dest = tile->dest;
    frame.frameLayout = shapeIn(*tile, frame);
    ++tile;
  }
}

bool areInTiles(const Layout& layout) {
  const Tile* const tiles = findTiles(layout.frames);
  return tiles != nullptr && std::equal(layout.frames.begin(), layout.frames.end(), tiles,
                                        [](const Frame& frame, const Tile& tile) {
                                          return frame.dest == tile.dest &&
                                                 frame.frameLayout == shapeIn(tile, frame);
                                        });
}

double leastViewHeight(const Frame& tile) {
  return heightOf(tile.dest) / kMaxEnlargement;
}

}  // namespace fyn::productionrules
