// The part of BasePeopleLayout that makes the picture of everybody, and says when it is to be made anew.
// Behind steadyFramingEnabled; off, the base decides.
#include <algorithm>

#include "geometry/FramePredicates.h"
#include "geometry/GroupFrame.h"
#include "geometry/Overlap.h"
#include "geometry/RectMath.h"
#include "layouts/people/BasePeopleLayout.h"
#include "layouts/people/ViewGrowth.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

constexpr std::uint32_t kWalksNowMs = 700;
constexpr double kAheadSeconds = 2.0;

// Intersection over union of the view on screen and the one that it would get now.
constexpr double kSameView = 0.75;

// Of a head's width.
constexpr double kOutside = 0.1;

// Not more than 2.5 output pixels for one of the camera.
constexpr Dimension kLeastView{512, 288};

// Of the height of the picture: when all heads stay in less than this, it closes in although somebody walks
// or has just left.
constexpr double kCloser = 0.8;

// In milliseconds. They have stayed in less for longer than that; while somebody walks, who comes by next is
// waited for.
constexpr std::uint32_t kCloseInMs = 2000;

}  // namespace

std::vector<Rect> BasePeopleLayout::getGroupHeadBounds(const Frame& frame) {
  std::vector<Rect> bounds = BaseLayout::getGroupHeadBounds(frame);
  if (!isSteady()) {
    return bounds;
  }
  for (const auto& [id, person] : mState.people) {
    const Head* const head = person->findHead(frame.fynCamId);
    if (head == nullptr || !mPresence.hasWalked(person->id, kWalksNowMs, tick())) {
      continue;
    }
    bounds.push_back(mPresence.placeAhead(person->id, frame.fynCamId, head->bbox, kAheadSeconds));
  }
  if (frame.headPosition == HeadPosition::GROUP_MOVE_CLOSE && doesSomebodyWalk()) {
    mEnvelope.addCorners(bounds);
  }
  return bounds;
}

Rect BasePeopleLayout::groupView(const Frame& frame, const std::vector<Rect>& bounds) {
  const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
  Frame around;
  GroupFrame::updateGroupFrameLayout(bounds, around, "BasePeopleLayout::groupView", image,
                                     static_cast<int>(getMaxScaleFactor()));
  const Rect whole = showsWholeRoom() ? getRoomView(frame) : grownTo(around.source, kLeastView, image);
  const Rect view = inOutputShape(whole, bounds);
  // Where somebody will be soon is not worth stretched faces.
  return inOutputShape(view, BaseLayout::getGroupHeadBounds(frame));
}

void BasePeopleLayout::calculateGroupFraming(Frame& frame) {
  BaseLayout::calculateGroupFraming(frame);
  const std::vector<Rect> bounds = isSteady() ? getGroupHeadBounds(frame) : std::vector<Rect>();
  if (!bounds.empty()) {
    frame.source = groupView(frame, bounds);
  }
}

HeadPosition BasePeopleLayout::getGroupHeadPosition(const Frame& frame) {
  if (!isSteady()) {
    return BaseLayout::getGroupHeadPosition(frame);
  }
  const std::vector<Rect> bounds = getGroupHeadBounds(frame);
  const Rect view = bounds.empty() ? frame.source : groupView(frame, bounds);
  if (isSameGroupView(frame, view)) {
    return HeadPosition::CENTER;
  }
  if (isGFHeadOutside(frame.source, BaseLayout::getGroupHeadBounds(frame))) {
    return HeadPosition::HEAD_OUTSIDE;
  }
  const HeadPosition position = BaseLayout::getGroupHeadPosition(frame);
  const bool walks = doesSomebodyWalk();
  // That wait is long, in case who has left comes back; where all others have stayed together, it is not
  // needed.
  const bool hasLeft = position == HeadPosition::GROUP_HEAD_LEFT;
  if ((walks || hasLeft) && canCloseIn(frame)) {
    return HeadPosition::GROUP_MOVE_CLOSE;
  }
  const bool leaves = std::any_of(bounds.begin(), bounds.end(), [&](const Rect& box) {
    const double least = kOutside * widthOf(box);
    const auto isBeyond = [least](double from, double to) { return to - from > least; };
    return isBeyond(box.left, frame.source.left) || isBeyond(frame.source.right, box.right) ||
           isBeyond(box.top, frame.source.top) || isBeyond(frame.source.bottom, box.bottom);
  });
  if (leaves) {
    return HeadPosition::GROUP_HEAD_OUTSIDE;
  }
  if (hasOutputShape(view) && !hasOutputShape(frame.source)) {
    return HeadPosition::GROUP_MOVE_CLOSE;
  }
  return position == HeadPosition::GROUP_MOVE_CLOSE && walks ? HeadPosition::CENTER : position;
}

std::uint32_t BasePeopleLayout::waitForGroup(HeadPosition position, std::uint32_t waitMs) {
  const Frame* const group = groupOnScreen();
  return isSteady() && position == HeadPosition::GROUP_MOVE_CLOSE && group != nullptr &&
                 !doesSomebodyWalk() && canCloseIn(*group)
             ? std::min(waitMs, kCloseInMs)
             : waitMs;
}

// Nobody would see more by it.
bool BasePeopleLayout::isSameGroupView(const Frame& frame, const Rect& view) {
  if (view == frame.source) {
    return true;
  }
  const HeadsInView heads = headsForTiles(frame.fynCamId);
  const std::vector<Rect> bounds = BaseLayout::getGroupHeadBounds(frame);
  return getIntersectionOverUnion(view, frame.source) >= kSameView &&
         hasOutputShape(view) == hasOutputShape(frame.source) &&
         std::all_of(bounds.begin(), bounds.end(), [&](const Rect& head) {
           return heads.isWhole(head, frame.source) || !heads.isWhole(head, view);
         });
}

// Somebody walks, but nobody has gone far of late: a picture of where they have been is clearly closer.
bool BasePeopleLayout::canCloseIn(const Frame& frame) {
  std::vector<Rect> bounds = BaseLayout::getGroupHeadBounds(frame);
  return mEnvelope.addCorners(bounds) &&
         heightOf(groupView(frame, bounds)) < kCloser * heightOf(frame.source);
}

}  // namespace fyn::productionrules
