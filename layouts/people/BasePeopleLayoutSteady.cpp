// The part of BasePeopleLayout for rooms in which people walk and detectors err. All of it but the choice of
// the candidate is behind steadyFramingEnabled; off, the base decides.
#include <algorithm>
#include <iterator>
#include <string_view>

#include "config/PrConfig.h"
#include "geometry/LayoutComparison.h"
#include "geometry/Overlap.h"
#include "geometry/RectMath.h"
#include "layouts/cycle/HeadPositions.h"
#include "layouts/people/BasePeopleLayout.h"
#include "layouts/people/PeopleTiles.h"
#include "layouts/people/PersonRenaming.h"
#include "layouts/people/ShotChange.h"
#include "layouts/people/TileRow.h"
#include "layouts/people/TileView.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// Times in milliseconds, found on tracks of walkers and on meetings with the noise of detectors.

// From 500 to 6000 make no difference.
constexpr std::uint32_t kWalkedMs = 3000;
// As much of a path as tells who walks; then tiles need no further wait, in a calm room.
constexpr std::uint32_t kFirstLookMs = 1500;
constexpr std::uint32_t kFirstTilesMs = 6000;
constexpr std::uint32_t kGroupOfWalkersMs = 1000;
constexpr std::uint32_t kWalkerOutsideMs = 500;
constexpr std::uint32_t kUnsettledMs = 2000;
constexpr std::uint32_t kSettledMs = 3000;
constexpr std::uint32_t kShortPictureMs = 5000;
constexpr std::uint32_t kEmptyTileMs = 2000;
constexpr std::uint32_t kLongMissedMs = 300;

// Intersection over union of a tile's view and the one that it would get now.
constexpr double kSameView = 0.75;
constexpr double kOtherView = 0.3;

// People shown that much larger by a tile than by the picture of everybody are worth its borders; asked where
// some share one. Tiles that are there stay for less.
constexpr double kLarger = 1.2;
constexpr double kStillLarger = 1.1;

// How much higher a tile is than it need be, for people sway.
constexpr double kSway = 1.03;

// The room at each side of people who share a tile, beyond what their heads' boxes have, in widths of the
// widest head.
constexpr double kBesideHeads = 1;

}  // namespace

// ---- Who is there ----

std::shared_ptr<MLData> BasePeopleLayout::findPresent(const std::shared_ptr<MLData>& mlData) {
  const bool isUsed = usesPresence();
  std::shared_ptr<MLData> present = mPresence.update(mlData, tick(), isUsed && !isPictureOfItsOwn());
  if (!isUsed) {
    return mlData;
  }
  takeNewNumbers();
  return present;
}

bool BasePeopleLayout::usesPresence() const {
  return isSteady() && PrConfig::get().presenceEnabled;
}

void BasePeopleLayout::takeNewNumbers() {
  for (const PersonRenamed& renamed : mPresence.renamed()) {
    takeNewNumber(mState.mCurLayout.get(), renamed);
    takeNewNumber(mState.mNextLayout.get(), renamed);
  }
}

bool BasePeopleLayout::isSteady() const {
  return PrConfig::get().steadyFramingEnabled;
}

bool BasePeopleLayout::showsWholeRoom() const {
  return false;
}

bool BasePeopleLayout::isMeant(const FynHead& /*person*/) const {
  return true;
}

void BasePeopleLayout::updatePeopleMap(const std::shared_ptr<MLData>& mlData) {
  BaseLayout::updatePeopleMap(mlData);
  const Frame* const frame = groupOnScreen();
  if (!isSteady() || frame == nullptr) {
    mEnvelope.forget();
    return;
  }
  const std::vector<Rect> bounds = BaseLayout::getGroupHeadBounds(*frame);
  if (!bounds.empty()) {
    Rect box = bounds.front();
    for (const Rect& each : bounds) {
      box = enclosing(box, each);
    }
    mEnvelope.add(tick(), frame->fynCamId, box);
  }
}

void BasePeopleLayout::resetLayouts() {
  BaseLayout::resetLayouts();
  mPresence.forget();
}

bool BasePeopleLayout::doesSomebodyWalk() const {
  return hasAnybodyWalked(kWalkedMs);
}

bool BasePeopleLayout::hasAnybodyWalked(std::uint32_t withinMs) const {
  return std::any_of(mState.people.begin(), mState.people.end(), [&](const auto& person) {
    return mPresence.hasWalked(person.second->id, withinMs, tick());
  });
}

bool BasePeopleLayout::hasWalked(const FynHead& person) const {
  return mPresence.hasWalked(person.id, kWalkedMs, tick());
}

const Frame* BasePeopleLayout::groupOnScreen() const {
  const Layout* const layout = mState.mCurLayout.get();
  return layout != nullptr && layout->layoutType == FramingType::GROUP && layout->frames.size() == 1
             ? &layout->frames.front()
             : nullptr;
}

// ---- Who walks is shown by the group ----

bool BasePeopleLayout::isFirstLook() const {
  return PrConfig::get().steadyFramingEnabled && (mState.mCurLayout == nullptr || isFirstGroup(kFirstLookMs));
}

// Whether the scene has begun with the picture of everybody on screen, less than so long ago.
bool BasePeopleLayout::isFirstGroup(std::uint32_t withinMs) const {
  return mState.adoptedBefore == 0 && groupOnScreen() != nullptr && tick() - mState.adoptedAt < withinMs;
}

// While all are in one picture, a tile for who has just come can wait: a box where nobody is would
// begin the wait for all tiles anew. Not where such boxes are so many that tiles have not settled before.
void BasePeopleLayout::keepSettled(std::vector<Seat>& seats) const {
  if (!usesPresence() || groupOnScreen() == nullptr ||
      mState.mCurLayout->reason == std::string_view(kUnsettled)) {
    return;
  }
  const auto hasJustCome = [this](const Seat& seat) {
    return mPresence.hasJustCome(seat.person->id, kSettledMs, tick());
  };
  if (!std::all_of(seats.begin(), seats.end(), hasJustCome)) {
    seats.erase(std::remove_if(seats.begin(), seats.end(), hasJustCome), seats.end());
  }
}

// Two tiles that show half of the room each would be the picture of everybody with a line through it.
bool BasePeopleLayout::areLargerThanGroup(const Layout& tiles, const std::vector<Rect>& views) {
  const std::vector<Frame>& frames = tiles.frames;
  const auto isShared = [](const Frame& frame) { return frame.fynHeads.size() > 1; };
  const auto isElsewhere = [&](const Frame& frame) { return frame.fynCamId != frames.front().fynCamId; };
  if (!isSteady() || frames.size() < 2 || std::none_of(frames.begin(), frames.end(), isShared) ||
      std::any_of(frames.begin(), frames.end(), isElsewhere)) {
    return true;
  }
  Frame group;
  group.fynCamId = frames.front().fynCamId;
  const Rect all = groupView(group, BaseLayout::getGroupHeadBounds(group));
  const double larger = &tiles == mState.mCurLayout.get() ? kStillLarger : kLarger;
  const double least = larger * kOutputSize.height / heightOf(all);
  return std::equal(frames.begin(), frames.end(), views.begin(),
                    [least](const Frame& frame, const Rect& view) {
                      return heightOf(frame.dest) >= least * heightOf(view);
                    });
}

// Tiles that never settle: the picture has been wrong for long, and what is wanted has just changed again.
bool BasePeopleLayout::isUnsettled(const std::shared_ptr<Layout>& tiles) const {
  return mState.mCurLayout != nullptr && groupOnScreen() == nullptr && mState.mNextLayout != nullptr &&
         mState.differsSince && tick() - *mState.differsSince >= kUnsettledMs &&
         isDifferentLayout(mState.mCurLayout, tiles) && isDifferentLayout(mState.mNextLayout, tiles);
}

std::uint32_t BasePeopleLayout::steadyWait(const Layout& candidate, std::uint32_t waitMs) const {
  if (!isSteady()) {
    return waitMs;
  }
  if (PrConfig::get().steadyFramingEnabled && isFirstGroup(kFirstTilesMs) &&
      !hasAnybodyWalked(kFirstTilesMs)) {
    return 0;
  }
  const bool isGroup = candidate.layoutType == FramingType::GROUP;
  if (isGroup && doesSomebodyWalk()) {
    return std::min(waitMs, kGroupOfWalkersMs);
  }
  // However often the wish changes, everybody is in the picture after this time, and somebody in the empty
  // room.
  const bool isUrgent = isGroup || mState.mCurLayout->layoutType == FramingType::ROOM;
  const std::uint32_t latest = waitMs + kUnsettledMs;
  const std::uint32_t wrongFor = isUrgent && mState.differsSince ? tick() - *mState.differsSince : 0;
  const std::uint32_t wait = std::min(waitMs, latest - std::min(latest, wrongFor));
  if (isATileEmpty()) {
    return PrConfig::get().steadyFramingEnabled ? std::min(wait, kEmptyTileMs) : wait;
  }
  const std::uint32_t age = tick() - mState.adoptedAt;
  const bool isShort = age < kShortPictureMs && mState.adoptedBefore > 0 && isEverybodyWhole();
  return isShort ? std::max(wait, kShortPictureMs - age) : wait;
}

// Who is missed when the wait is over may be about to be given up, and the tile with its person.
bool BasePeopleLayout::mayAdopt(const Layout& due) const {
  if (!PrConfig::get().steadyFramingEnabled || !usesPresence() || mState.mCurLayout == nullptr ||
      !hasTiles(due)) {
    return true;
  }
  return std::none_of(due.frames.begin(), due.frames.end(), [this](const Frame& frame) {
    return std::any_of(frame.fynHeads.begin(), frame.fynHeads.end(), [this](std::int64_t id) {
      return mPresence.missedMs(static_cast<std::int32_t>(id), tick()) >= kLongMissedMs;
    });
  });
}

bool BasePeopleLayout::isEverybodyWhole() const {
  const std::vector<Frame>& frames = mState.mCurLayout->frames;
  return std::all_of(mState.people.begin(), mState.people.end(), [&](const auto& person) {
    return !isMeant(*person.second) || std::any_of(frames.begin(), frames.end(), [&](const Frame& frame) {
      return headsForTiles(frame.fynCamId).areWhole(mState.people, {person.first}, frame.source);
    });
  });
}

bool BasePeopleLayout::isATileEmpty() const {
  const std::vector<Frame>& frames = mState.mCurLayout->frames;
  const auto isThere = [this](std::int64_t id) { return mState.people.count(id) != 0; };
  return hasTiles(*mState.mCurLayout) && std::any_of(frames.begin(), frames.end(), [&](const Frame& frame) {
           return std::none_of(frame.fynHeads.begin(), frame.fynHeads.end(), isThere);
         });
}

// ---- Tiles are watched by what they show ----

HeadPosition BasePeopleLayout::getCurrentHeadPosition(const Frame& frame) {
  const bool isTile = frame.frameType == FramingType::HEAD || frame.frameType == FramingType::PROXIMITY;
  Rect box;
  if (!isSteady() || !isTile) {
    return BaseLayout::getCurrentHeadPosition(frame);
  }
  if (!constructBoundingBox(frame, box, false)) {
    return HeadPosition::CENTER;
  }
  const bool isHead = frame.frameType == FramingType::HEAD;
  const HeadPosition position = isHead ? singleHeadPosition(box, frame) : HeadPosition::HEAD_OFF_CENTER;
  const bool isCentred = position == HeadPosition::CENTER;
  // The usual case: nothing to gain from another view.
  if (isHead && (isCentred ? !cutsOthers(frame, frame.source) : position != HeadPosition::HEAD_OFF_CENTER)) {
    return position;
  }
  const HeadsInView heads = headsOf(frame);
  TileView anew = tileView(frame, box, heads, mState.mCurLayout.get());
  const Rect view = anew.view();
  const bool isCut = !isHead && !heads.areWhole(mState.people, frame.fynHeads, frame.source);
  if (!isCut && canTurnAway(frame, view)) {
    return HeadPosition::HEAD_ON_EDGE;
  }
  const double overlap = getIntersectionOverUnion(view, frame.source);
  if (isCut ? view == frame.source : isCentred || overlap >= kSameView) {
    return isHead ? HeadPosition::CENTER : positionInPlace(frame, anew.box());
  }
  if (isHead || overlap < kOtherView) {
    return HeadPosition::HEAD_OFF_CENTER;
  }
  const HeadPosition shared = neighboursPosition(box, frame);
  return shared == HeadPosition::CENTER ? positionInPlace(frame, anew.box()) : shared;
}

HeadPosition BasePeopleLayout::positionInPlace(const Frame& /*frame*/, const Rect& /*base*/) const {
  return HeadPosition::CENTER;
}

// Whether the view of the frame's camera cuts the head of somebody who is not meant.
bool BasePeopleLayout::cutsOthers(const Frame& frame, const Rect& view) {
  if (!PrConfig::get().steadyFramingEnabled) {
    return false;
  }
  const std::vector<HeadOfPerson>& seen = headsSeenBy(frame.fynCamId);
  return std::any_of(seen.begin(), seen.end(), [&](const HeadOfPerson& head) {
    return cutsOff(head.box, view) && frame.fynHeads.count(head.personId) == 0;
  });
}

const std::vector<HeadOfPerson>& BasePeopleLayout::headsSeenBy(std::uint32_t camId) {
  return mHeadsOfCamera.of(mState.people, mState.peopleVersion, camId);
}

bool BasePeopleLayout::canTurnAway(const Frame& frame, const Rect& view) {
  // Of walkers the group is shown soon.
  return cutsOthers(frame, frame.source) && !cutsOthers(frame, view) && !doesSomebodyWalk();
}

// A tile is made for where its person rests: made for the end of a sway it would be wrong for long.
Rect BasePeopleLayout::restingBox(const Frame& frame, const Rect& latest) const {
  if (frame.frameType != FramingType::HEAD || frame.fynHeads.size() != 1 || isPictureOfItsOwn() ||
      !usesPresence()) {
    return latest;
  }
  return mPresence.restingBox(static_cast<std::int32_t>(*frame.fynHeads.begin()), frame.fynCamId, latest);
}

TileGrowth BasePeopleLayout::growthOf(const Frame& frame, const Rect& own) {
  TileGrowth growth{leastViewHeight(frame)};
  if (!isSteady()) {
    return growth;
  }
  if (frame.frameType == FramingType::PROXIMITY) {
    std::int32_t widest = 0;
    for (const HeadOfPerson& head : headsSeenBy(frame.fynCamId)) {
      if (frame.fynHeads.count(head.personId) != 0) {
        widest = std::max(widest, widthOf(head.box));
      }
    }
    growth.width = widthOf(own) + kBesideHeads * 2 * widest;
  } else if (!isPictureOfItsOwn()) {
    growth.factor = kSway;
  }
  return growth;
}

void BasePeopleLayout::fitAmongOthers(TileView& view, const Frame& frame, const Rect& own,
                                      const Layout* row) {
  mOthers.clear();
  if (PrConfig::get().steadyFramingEnabled) {
    for (const HeadOfPerson& head : headsSeenBy(frame.fynCamId)) {
      if (frame.fynHeads.count(head.personId) == 0) {
        mOthers.push_back(head.box);
      }
    }
  }
  if (isPictureOfItsOwn()) {
    view.standClearOf(mOthers, own);
  } else {
    view.turnFrom(mOthers, own);
  }
  if (row != nullptr) {
    view.growBeside(mOthers, viewHeightLikeRow(frame, *row, mState.people));
  }
  if (!isPictureOfItsOwn()) {
    view.bringEyesInLine(own, mOthers);
  }
}

Rect BasePeopleLayout::getRoomView(const Frame& frame) {
  if (!isSteady()) {
    return BaseLayout::getRoomView(frame);
  }
  const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
  return {0, 0, image.width, image.height};
}

std::string BasePeopleLayout::getReframeAnimation(HeadPosition position) {
  return PrConfig::get().pfAnimationCutOnly ? BaseLayout::getReframeAnimation(position) : steadyMove();
}

std::uint32_t BasePeopleLayout::steadyReframeWait(HeadPosition position, std::uint32_t waitMs) const {
  return isSteady() && position == HeadPosition::HEAD_OUTSIDE && groupOnScreen() != nullptr
             ? std::min(waitMs, kWalkerOutsideMs)
             : waitMs;
}

}  // namespace fyn::productionrules
