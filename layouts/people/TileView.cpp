#include "layouts/people/TileView.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "geometry/FramePredicates.h"
#include "geometry/RectMath.h"
#include "layouts/people/HeadsInView.h"

namespace fyn::productionrules {

namespace {

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

Rect moved(const Rect& box, std::int32_t x, std::int32_t y) {
  return {wrapAdd(box.left, x), wrapAdd(box.top, y), wrapAdd(box.right, x), wrapAdd(box.bottom, y)};
}

Rect movedInside(const Rect& box, const Dimension& image) {
  return moved(box, inwards(box.left, box.right, image.width), inwards(box.top, box.bottom, image.height));
}

// Of the view's width.
constexpr double kMostTurn = 0.15;

// Of the other's head: what a view can turn from, the room left beside it, and what is not worth a move.
constexpr double kSliver = 0.4;
constexpr double kGap = 0.3;
constexpr double kUnseen = 0.05;

// What is tried for a picture of its own, in this order: the smaller change first. Shares of the view.
constexpr double kGrowths[] = {0, 0.1, 0.2, 0.3, 0.4, 0.6, 0.8};
constexpr double kTurns[] = {0, 0.05, -0.05, 0.1, -0.1, 0.15, -0.15, 0.2, -0.2};
constexpr double kRoom = 0.2;

// How far the view has to move so that it shows nothing of a head of which it shows a little.
std::int32_t turnFromHead(const Rect& head, const Rect& view) {
  if (!doOverlap(head, view)) {
    return 0;
  }
  const std::int32_t gap = share(kGap, widthOf(head));
  const double sliver = kSliver * widthOf(head);
  // A box from outside may be wider than its sides can say.
  const double shownAtLeft = double{1} * head.right - view.left;
  const double shownAtRight = double{1} * view.right - head.left;
  const auto turnBy = [gap](double shown) { return wrapAdd(static_cast<std::int32_t>(shown), gap); };
  return shownAtLeft <= sliver ? turnBy(shownAtLeft) : shownAtRight <= sliver ? -turnBy(shownAtRight) : 0;
}

constexpr double kPartsOfTheWay[] = {1, 0.75, 0.5, 0.25};

bool showsMore(const std::vector<Rect>& heads, const Rect& view, const Rect& before) {
  return std::any_of(heads.begin(), heads.end(),
                     [&](const Rect& head) { return doOverlap(head, view) && !doOverlap(head, before); });
}

bool cutsAny(const std::vector<Rect>& heads, const Rect& view) {
  return std::any_of(heads.begin(), heads.end(), [&](const Rect& head) { return cutsOff(head, view); });
}

// Of the view's height.
constexpr double kEyeLine = 0.4;

}  // namespace

TileView::TileView(const Frame& tile, const Dimension& image, const Rect& box)
    : mPlace{widthOf(tile.dest), heightOf(tile.dest)},
      mImage(image),
      mRule(mPlace.width, mPlace.height, tile.frameLayout, image),
      mBox(box) {}

const Rect& TileView::view() {
  if (!mView) {
    mView = mRule.frameAround(mBox, 0);
  }
  return *mView;
}

template <typename Condition>
bool TileView::take(const Rect& box, Condition isGood) {
  const Rect seen = mRule.frameAround(box, 0);
  const bool isTaken = isGood(seen);
  if (isTaken) {
    mBox = box;
    mView = seen;
  }
  return isTaken;
}

void TileView::growToHeight(double least) {
  // A view is never smaller than what it is made for.
  if (heightOf(mBox) <= 0 || heightOf(mBox) >= least || mPlace.height <= 0) {
    return;
  }
  // Where the border of the image cuts the view, it has to grow again.
  for (int round = 0; round < kRounds; ++round) {
    const std::int32_t height = heightOf(view());
    if (height <= 0 || height >= least) {
      return;
    }
    const double growth = ((least + kRounding) / height - 1) / 2;
    const Rect grown = grownBy(mBox, share(growth, widthOf(mBox)), share(growth, heightOf(mBox)));
    mBox = movedInside(grown, mImage);
    mView.reset();
  }
}

void TileView::grow(const TileGrowth& growth) {
  growToHeight(growth.height);
  if (mPlace.width > 0) {
    growToHeight(growth.width * mPlace.height / mPlace.width);
  }
  if (growth.factor > 1) {
    growToHeight(growth.factor * heightOf(view()));
  }
}

void TileView::growBeside(const std::vector<Rect>& others, double height) {
  const Rect before = view();
  const double least = heightOf(before);
  if (height <= least) {
    return;
  }
  for (const double part : kPartsOfTheWay) {
    TileView grown = *this;
    grown.growToHeight(least + part * (height - least));
    if (!showsMore(others, grown.view(), before)) {
      *this = grown;
      return;
    }
  }
}

void TileView::bringEyesInLine(const Rect& own, const std::vector<Rect>& others) {
  const Rect before = view();
  const double eyes = (double{1} * own.top + own.bottom) / 2;
  const double below = eyes - before.top - kEyeLine * heightOf(before);
  const auto isGood = [&](const Rect& seen) {
    const bool showsOwn =
        seen.top <= std::max(own.top, 0) && seen.bottom >= std::min(own.bottom, mImage.height);
    return showsOwn && heightOf(seen) >= heightOf(before) && !showsMore(others, seen, before);
  };
  for (const double part : kPartsOfTheWay) {
    const auto down = static_cast<std::int32_t>(std::clamp(part * below, -1e6, 1e6));
    if (down == 0 || take(moved(mBox, 0, down), isGood)) {
      return;
    }
  }
}

void TileView::turnFrom(const std::vector<Rect>& others, const Rect& own) {
  std::int32_t toRight = 0;
  std::int32_t toLeft = 0;
  for (const Rect& head : others) {
    const std::int32_t turn = turnFromHead(head, view());
    toRight = std::max(toRight, turn);
    toLeft = std::min(toLeft, turn);
  }
  if ((toRight != 0) == (toLeft != 0)) {
    return;
  }
  const std::int32_t most = share(kMostTurn, widthOf(view()));
  const std::int32_t turn = std::clamp(toRight + toLeft, -most, most);
  const auto showsOwn = [&](const Rect& seen) {
    return seen.left <= std::max(own.left, 0) && seen.right >= std::min(own.right, mImage.width);
  };
  // Not as far as somebody else's head.
  for (const double part : kPartsOfTheWay) {
    if (take(moved(mBox, static_cast<std::int32_t>(part * turn), 0),
             [&](const Rect& seen) { return showsOwn(seen) && !cutsAny(others, seen); })) {
      return;
    }
  }
  take(moved(mBox, turn, 0), showsOwn);
}

void TileView::standClearOf(const std::vector<Rect>& others, const Rect& own) {
  if (!cutsAny(others, view())) {
    return;
  }
  const HeadsInView heads(FynHead::kNoCamera, mImage, HeadRule::PartlyInImage);
  std::vector<Rect> apart = others;
  for (Rect& head : apart) {
    head = grownBy(head, share(kRoom, widthOf(head)), share(kRoom, heightOf(head)));
  }
  const Rect box = mBox;
  const std::int32_t width = widthOf(view());
  const auto isGood = [&](const Rect& seen) { return heads.isWhole(own, seen) && !cutsAny(apart, seen); };
  for (const double growth : kGrowths) {
    const Rect grown = grownBy(box, share(growth / 2, widthOf(box)), share(growth / 2, heightOf(box)));
    for (const double turn : kTurns) {
      const Rect turned = movedInside(moved(grown, static_cast<std::int32_t>(turn * width), 0), mImage);
      if (take(turned, isGood)) {
        return;
      }
    }
  }
}

bool cutsOff(const Rect& head, const Rect& view) {
  if (!doOverlap(head, view) || isInside(view, head)) {
    return false;
  }
  const Rect shown{std::max(head.left, view.left), std::max(head.top, view.top),
                   std::min(head.right, view.right), std::min(head.bottom, view.bottom)};
  const double width = widthOf(head);
  const double height = heightOf(head);
  const double shownWidth = widthOf(shown);
  const double shownHeight = heightOf(shown);
  return shownWidth > kUnseen * width && shownHeight > kUnseen * height &&
         (width - shownWidth > kUnseen * width || height - shownHeight > kUnseen * height);
}

}  // namespace fyn::productionrules
