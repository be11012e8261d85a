#include "layouts/people/PeopleTiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string>
#include <string_view>

#include "geometry/RectMath.h"
#include "geometry/RuleOfThirds.h"
#include "layouts/people/HeadsInView.h"

namespace fyn::productionrules {

namespace {

constexpr double kMaxEnlargement = 2.5;

// Pixels that the view may lose on its way from a base.
constexpr double kRounding = 2;

// Pixels; a box of any size may come from outside.
std::int32_t share(double factor, std::int32_t length) {
  return static_cast<std::int32_t>(std::ceil(std::clamp(factor * length, 0.0, 1e6)));
}

constexpr int kRounds = 4;

// By how much the span has to move to lie in the image, as far as it fits.
std::int32_t inwards(std::int64_t low, std::int64_t high, std::int64_t size) {
  return static_cast<std::int32_t>(low < 0 ? std::min(-low, std::max(size - high, std::int64_t{0}))
                                           : -std::min(std::max(high - size, std::int64_t{0}), low));
}

Rect movedInside(const Rect& box, const Dimension& image) {
  const std::int32_t x = inwards(box.left, box.right, image.width);
  const std::int32_t y = inwards(box.top, box.bottom, image.height);
  return {wrapAdd(box.left, x), wrapAdd(box.top, y), wrapAdd(box.right, x), wrapAdd(box.bottom, y)};
}

// Of the view's width.
constexpr double kMostTurn = 0.15;

// Of the other's head: what a view can turn from, the room left beside it, and what is not worth a move.
constexpr double kSliver = 0.4;
constexpr double kGap = 0.3;
constexpr double kUnseen = 0.05;

// What is tried for a picture of its own, in this order: the smaller change first. Shares of the view.
constexpr double kGrowths[] = {0, 0.1, 0.2, 0.3, 0.4};
constexpr double kTurns[] = {0, 0.05, -0.05, 0.1, -0.1, 0.15, -0.15, 0.2, -0.2};
constexpr double kRoom = 0.2;

Rect viewAround(const Rect& base, const Frame& tile, const Dimension& image) {
  return getRuleOfThirdFrame(base, widthOf(tile.dest), heightOf(tile.dest), tile.frameLayout, image, 0);
}

// How far the view has to move so that it shows nothing of a head of which it shows a little.
std::int32_t turnFrom(const Rect& head, const Rect& view) {
  if (head.bottom <= view.top || head.top >= view.bottom) {
    return 0;
  }
  const std::int32_t gap = share(kGap, widthOf(head));
  const double sliver = kSliver * widthOf(head);
  const auto isSliver = [sliver](double shown) { return shown > 0 && shown <= sliver; };
  if (isSliver(static_cast<double>(head.right) - view.left)) {
    return wrapAdd(wrapSub(head.right, view.left), gap);
  }
  return isSliver(static_cast<double>(view.right) - head.left) ? wrapSub(wrapSub(head.left, view.right), gap)
                                                               : 0;
}

constexpr double kPartsOfTheWay[] = {1, 0.75, 0.5, 0.25};

bool isSeen(const Rect& head, const Rect& view) {
  return head.left < view.right && head.right > view.left && head.top < view.bottom && head.bottom > view.top;
}

bool showsMore(const std::vector<Rect>& heads, const Rect& view, const Rect& before) {
  return std::any_of(heads.begin(), heads.end(),
                     [&](const Rect& head) { return isSeen(head, view) && !isSeen(head, before); });
}

// Of the view's height.
constexpr double kEyeLine = 0.4;

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

}  // namespace

bool hasTiles(const Layout& layout) {
  return layout.layoutType == FramingType::HEAD || layout.layoutType == FramingType::PROXIMITY;
}

void placeInTiles(Layout& layout) {
  std::string units;
  for (const Frame& frame : layout.frames) {
    units += frame.frameType == FramingType::PROXIMITY ? 'P' : 'H';
  }
  const auto* const row = std::find_if(std::begin(kTileRows), std::end(kTileRows),
                                       [&](const TileRow& each) { return fits(each.units, units); });
  if (row == std::end(kTileRows)) {
    return;
  }
  for (std::size_t i = 0; i < units.size(); ++i) {
    const Tile& tile = row->tiles[i];
    layout.frames[i].dest = tile.dest;
    layout.frames[i].frameLayout = units[i] == 'P' ? tile.neighbours : tile.head;
  }
}

double leastViewHeight(const Frame& tile) {
  return heightOf(tile.dest) / kMaxEnlargement;
}

Rect growToHeight(const Rect& base, const Frame& tile, const Dimension& image, double least) {
  // A view is never smaller than what it is made for.
  if (heightOf(base) <= 0 || heightOf(base) >= least || heightOf(tile.dest) <= 0) {
    return base;
  }
  const auto viewHeight = [&](const Rect& box) { return heightOf(viewAround(box, tile, image)); };
  Rect grown = base;
  std::int32_t height = viewHeight(grown);
  // Where the border of the image cuts the view, it has to grow again.
  for (int round = 0; round < kRounds && height > 0 && height < least; ++round) {
    const double growth = ((least + kRounding) / height - 1) / 2;
    grown = movedInside(grownBy(grown, share(growth, widthOf(grown)), share(growth, heightOf(grown))), image);
    height = viewHeight(grown);
  }
  return grown;
}

Rect growBesideOthers(const Rect& base, const std::vector<Rect>& others, const Frame& tile,
                      const Dimension& image, double height) {
  const Rect view = viewAround(base, tile, image);
  const double before = heightOf(view);
  if (height <= before) {
    return base;
  }
  for (const double part : kPartsOfTheWay) {
    const Rect grown = growToHeight(base, tile, image, before + part * (height - before));
    const Rect seen = viewAround(grown, tile, image);
    if (!showsMore(others, seen, view)) {
      return grown;
    }
  }
  return base;
}

Rect withEyesInLine(const Rect& base, const Rect& own, const std::vector<Rect>& others, const Frame& tile,
                    const Dimension& image) {
  const Rect view = viewAround(base, tile, image);
  const double eyes = (double{1} * own.top + own.bottom) / 2;
  const double below = eyes - view.top - kEyeLine * heightOf(view);
  for (const double part : kPartsOfTheWay) {
    const auto down = static_cast<std::int32_t>(std::clamp(part * below, -1e6, 1e6));
    const Rect moved{base.left, wrapAdd(base.top, down), base.right, wrapAdd(base.bottom, down)};
    const Rect seen = viewAround(moved, tile, image);
    const bool showsOwn =
        seen.top <= std::max(own.top, 0) && seen.bottom >= std::min(own.bottom, image.height);
    if (showsOwn && heightOf(seen) >= heightOf(view) && !showsMore(others, seen, view)) {
      return moved;
    }
  }
  return base;
}

Rect turnFromOthers(const Rect& base, const Rect& own, const std::vector<Rect>& others, const Frame& tile,
                    const Dimension& image) {
  const Rect view = viewAround(base, tile, image);
  std::int32_t toRight = 0;
  std::int32_t toLeft = 0;
  for (const Rect& head : others) {
    const std::int32_t turn = turnFrom(head, view);
    toRight = std::max(toRight, turn);
    toLeft = std::min(toLeft, turn);
  }
  const std::int32_t most = share(kMostTurn, widthOf(view));
  const std::int32_t turn = std::clamp(toRight != 0 ? toRight : toLeft, -most, most);
  if (turn == 0 || (toRight != 0 && toLeft != 0)) {
    return base;
  }
  const Rect turned{wrapAdd(base.left, turn), base.top, wrapAdd(base.right, turn), base.bottom};
  const Rect seen = viewAround(turned, tile, image);
  const bool showsOwn = seen.left <= std::max(own.left, 0) && seen.right >= std::min(own.right, image.width);
  return showsOwn ? turned : base;
}

Rect clearOfOthers(const Rect& base, const Rect& own, const std::vector<Rect>& others, const Frame& tile,
                   const Dimension& image) {
  const Rect view = viewAround(base, tile, image);
  if (!cutsAny(others, view)) {
    return base;
  }
  const HeadsInView heads(tile.fynCamId, image, HeadRule::PartlyInImage);
  std::vector<Rect> apart = others;
  for (Rect& head : apart) {
    head = grownBy(head, share(kRoom, widthOf(head)), share(kRoom, heightOf(head)));
  }
  for (const double growth : kGrowths) {
    const Rect grown = grownBy(base, share(growth / 2, widthOf(base)), share(growth / 2, heightOf(base)));
    for (const double turn : kTurns) {
      const std::int32_t x = share(turn, widthOf(view));
      const Rect moved =
          movedInside({wrapAdd(grown.left, x), grown.top, wrapAdd(grown.right, x), grown.bottom}, image);
      const Rect seen = viewAround(moved, tile, image);
      if (heads.isWhole(own, seen) && !cutsAny(apart, seen)) {
        return moved;
      }
    }
  }
  return base;
}

bool cutsAny(const std::vector<Rect>& heads, const Rect& view) {
  return std::any_of(heads.begin(), heads.end(), [&view](const Rect& head) {
    const Rect shown{std::max(head.left, view.left), std::max(head.top, view.top),
                     std::min(head.right, view.right), std::min(head.bottom, view.bottom)};
    const double width = widthOf(head);
    const double height = heightOf(head);
    const double shownWidth = widthOf(shown);
    const double shownHeight = heightOf(shown);
    return shownWidth > kUnseen * width && shownHeight > kUnseen * height &&
           (width - shownWidth > kUnseen * width || height - shownHeight > kUnseen * height);
  });
}

}  // namespace fyn::productionrules
