#include "layouts/people/BasePeopleLayout.h"

#include <algorithm>
#include <set>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/GroupLayout.h"
#include "geometry/ProximityRect.h"
#include "geometry/RectMath.h"
#include "layouts/people/PeopleFrameTimerSetting.h"
#include "layouts/people/PeopleTiles.h"
#include "layouts/people/PeopleWaits.h"
#include "layouts/people/TileRow.h"
#include "layouts/people/TileView.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// Neighbours up to this number share a tile as PROXIMITY; more of them are a large proximity.
constexpr std::size_t kMaxNeighbours = 3;

// The type of a layout with a tile for each unit; GROUP when they can have none.
FramingType tilesType(const std::vector<PeopleUnit>& units) {
  if (units.size() > kMaxTiles || (units.size() == 1 && units.front().size() > kMaxNeighbours)) {
    return FramingType::GROUP;
  }
  const bool neighbours =
      std::any_of(units.begin(), units.end(), [](const PeopleUnit& unit) { return unit.size() > 1; });
  return neighbours ? FramingType::PROXIMITY : FramingType::HEAD;
}

FramingType frameTypeOf(const PeopleUnit& unit) {
  return unit.size() > 1 ? FramingType::PROXIMITY : FramingType::HEAD;
}

constexpr auto headIdOf = [](const Seat& seat) -> std::int64_t {
  return seat.person->findHead(seat.camId)->id;
};

constexpr auto personIdOf = [](const Seat& seat) -> std::int64_t { return seat.person->id; };

void addFrame(Layout& layout, const PeopleUnit& unit) {
  Frame frame;
  frame.frameIndex = static_cast<std::int32_t>(layout.frames.size());
  frame.frameType = frameTypeOf(unit);
  frame.fynCamId = unit.front().camId;
  for (const Seat& seat : unit) {
    frame.heads.insert(headIdOf(seat));
    frame.fynHeads.insert(personIdOf(seat));
  }
  std::int32_t& counter = unit.size() == 1                ? layout.headFrameCount
                          : unit.size() <= kMaxNeighbours ? layout.proximityFrameCount
                                                          : layout.largeProximityFrameCount;
  ++counter;
  layout.faceCount += static_cast<std::int32_t>(unit.size());
  layout.frames.push_back(std::move(frame));
}

template <typename IdOf>
bool areIdsOf(const PeopleUnit& unit, const std::set<std::int64_t>& ids, IdOf idOf) {
  return ids.size() == unit.size() && std::all_of(ids.begin(), ids.end(), [&](std::int64_t id) {
           return std::any_of(unit.begin(), unit.end(), [&](const Seat& seat) { return idOf(seat) == id; });
         });
}

// Whether the frame is one that addFrame would make.
bool isFrameOf(const Frame& frame, const PeopleUnit& unit) {
  return frame.frameType == frameTypeOf(unit) && frame.fynCamId == unit.front().camId &&
         areIdsOf(unit, frame.heads, headIdOf) && areIdsOf(unit, frame.fynHeads, personIdOf);
}

// Whether the view is made for the square around the heads.
bool isSquare(const Frame& frame) {
  return frame.frameType == FramingType::PROXIMITY && PrConfig::get().proximitySquareFeature;
}

// How much higher the view of a tile has to become before it is made anew because one beside it was.
constexpr double kNotAlike = 1.05;

bool isInViewOf(std::uint32_t camId, const std::vector<Seat>& seats) {
  const HeadsInView heads = headsForTiles(camId);
  return std::all_of(seats.begin(), seats.end(),
                     [&](const Seat& seat) { return heads.find(*seat.person) != nullptr; });
}

}  // namespace

BasePeopleLayout::BasePeopleLayout() {
  mTimerSetting = std::make_shared<PeopleFrameTimerSetting>();
}

// ---- Candidates ----

std::shared_ptr<Layout> BasePeopleLayout::makeCandidate(const MLData& data, PeopleChoice choice) {
  const std::size_t people = choice.seats.size();
  std::shared_ptr<Layout> layout = layoutFor(data, std::move(choice));
  if (layout != mState.mCurLayout) {
    layout->frameNumber = data.frameNumber;
    layout->faceCount = hasTiles(*layout) ? layout->faceCount : static_cast<std::int32_t>(people);
  }
  return layout;
}

std::shared_ptr<Layout> BasePeopleLayout::layoutFor(const MLData& data, PeopleChoice choice) {
  if (choice.seats.empty()) {
    return oneFrame(data, FramingType::ROOM, choice.roomCamId, "");
  }
  const auto group = [&](const char* reason) {
    return oneFrame(data, FramingType::GROUP, choice.groupCamId, reason);
  };
  if (std::any_of(choice.seats.begin(), choice.seats.end(),
                  [this](const Seat& seat) { return hasWalked(*seat.person); })) {
    return group("somebody walks");
  }
  if (isFirstLook() && isInViewOf(choice.groupCamId, choice.seats)) {
    return group(kFirstLook);
  }
  if (static_cast<std::int64_t>(choice.seats.size()) > choice.maxPeople) {
    return group("");
  }
  keepSettled(choice.seats);
  const char* noTiles = "";
  std::shared_ptr<Layout> tiles = tilesFor(std::move(choice.seats), noTiles);
  if (tiles == nullptr) {
    return group(noTiles);
  }
  return isUnsettled(tiles) ? group(kUnsettled) : tiles;
}

std::shared_ptr<Layout> BasePeopleLayout::tilesFor(std::vector<Seat> seats, const char*& noTiles) {
  formUnitsOf(std::move(seats));
  while (true) {
    // As those that wait: with another order their wait would begin anew.
    for (const Layout* const layout : {mState.mCurLayout.get(), mState.mNextLayout.get()}) {
      if (isSteady() && layout != nullptr) {
        orderAsShown(mUnits, *layout);
      }
    }
    const FramingType type = tilesType(mUnits);
    if (type == FramingType::GROUP) {
      return nullptr;
    }
    std::shared_ptr<Layout> tiles = tilesOf(mUnits, type);
    if (tiles->frames.size() == 1 && isSurelyShown(tiles->frames.front())) {
      return tiles;
    }
    mViews.clear();
    for (const Frame& frame : tiles->frames) {
      const std::optional<RuleOfThirdsView> view = tryView(frame);
      if (!view) {
        noTiles = isSteady() ? kCutting : "";
        return nullptr;
      }
      mViews.push_back(view->source);
    }
    if (!PrConfig::get().newPfFeatureEnabled ||
        !joinByView(mUnits, mViews, mState.mCurLayout.get(), mState.mNextLayout.get())) {
      noTiles = kNoLarger;
      return areLargerThanGroup(*tiles, mViews) ? tiles : nullptr;
    }
  }
}

std::shared_ptr<Layout> BasePeopleLayout::tilesOf(const std::vector<PeopleUnit>& units, FramingType type) {
  const std::shared_ptr<Layout>& shown = mState.mCurLayout;
  if (shown != nullptr && shown->layoutType == type &&
      std::equal(shown->frames.begin(), shown->frames.end(), units.begin(), units.end(), isFrameOf) &&
      areInTiles(*shown)) {
    return shown;
  }
  auto tiles = std::make_shared<Layout>();
  tiles->layoutType = type;
  tiles->frames.reserve(units.size());
  for (const PeopleUnit& unit : units) {
    addFrame(*tiles, unit);
  }
  fillPositionRect(tiles);
  return tiles;
}

void BasePeopleLayout::formUnitsOf(std::vector<Seat> seats) {
  if (PrConfig::get().newPfFeatureEnabled) {
    formUnits(std::move(seats), mState.mCurLayout.get(), mState.mNextLayout.get(), mUnits);
  } else {
    unitsOfOne(std::move(seats), mUnits);
  }
}

std::shared_ptr<Layout> BasePeopleLayout::oneFrame(const MLData& data, FramingType type, std::uint32_t camId,
                                                   const char* reason) {
  if (std::shared_ptr<Layout> kept = keepEverybody(type, reason)) {
    return kept;
  }
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  layout->reason = reason;
  constructGroupLayout(data.getHeads(), layout, camId);
  fillPositionRect(layout);
  return layout;
}

void BasePeopleLayout::fillPositionRect(std::shared_ptr<Layout>& layout) {
  if (hasTiles(*layout)) {
    placeInTiles(*layout);
  } else {
    BaseLayout::fillPositionRect(layout);
  }
}

// ---- Views ----

std::optional<RuleOfThirdsView> BasePeopleLayout::tryView(const Frame& frame) {
  const HeadsInView heads = headsOf(frame);
  Rect own;
  // The base's box: a trial must not count as a report of heads that are missing.
  if (!heads.holdsAll(mState.people, frame.fynHeads) ||
      !BaseLayout::constructBoundingBox(frame, own, false)) {
    return std::nullopt;
  }
  Rect box = own;
  if (isSquare(frame)) {
    BaseLayout::constructBoundingBox(frame, box, true);
  }
  TileView view = tileView(frame, box, heads, nullptr);
  return heads.isWhole(own, view.view()) ? std::optional(RuleOfThirdsView{view.view(), view.box()})
                                         : std::nullopt;
}

bool BasePeopleLayout::isSurelyShown(const Frame& frame) {
  const HeadsInView heads = headsOf(frame);
  Rect own;
  // Nothing that is done to a view for the sake of others cuts its own people.
  return !isSquare(frame) && heads.holdsAll(mState.people, frame.fynHeads) &&
         BaseLayout::constructBoundingBox(frame, own, false) &&
         heads.isWhole(own, grownView(frame, own, heads.image()).view());
}

HeadsInView BasePeopleLayout::headsOf(const Frame& frame) {
  return {frame.fynCamId, getImageSize(frame), HeadRule::PartlyInImage};
}

bool BasePeopleLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return mHeadFaults.allowFraming(frame, mState.people, getImageSize(frame)) &&
         BaseLayout::constructBoundingBox(frame, box, withHeadBuffer || isSquare(frame));
}

Rect BasePeopleLayout::getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& latest) {
  return tileView(frame, latest, headsOf(frame), mState.mCurLayout.get()).box();
}

TileView BasePeopleLayout::tileView(const Frame& frame, const Rect& latest, const HeadsInView& heads,
                                    const Layout* row) {
  const Rect resting = restingBox(frame, latest);
  if (!(resting == latest)) {
    TileView view = viewAround(frame, resting, heads.image(), row);
    if (heads.isWhole(latest, view.view())) {
      return view;
    }
  }
  return viewAround(frame, latest, heads.image(), row);
}

TileView BasePeopleLayout::grownView(const Frame& frame, const Rect& box, const Dimension& image) {
  // Steadily the view becomes as wide as its people need, not as high as they are wide.
  const Rect base =
      !isSquare(frame) ? BaseLayout::getBaseRectForRuleofThirdsFrame(frame, box)
      : isSteady()     ? box
                   : getProximitySquare(box, getCameraLensModelDimension(static_cast<int>(frame.fynCamId)));
  return mGrownViews.grown({frame, image, base}, growthOf(frame, box));
}

TileView BasePeopleLayout::viewAround(const Frame& frame, const Rect& box, const Dimension& image,
                                      const Layout* row) {
  TileView view = grownView(frame, box, image);
  if (isSteady()) {
    fitAmongOthers(view, frame, box, row);
  }
  return view;
}

// Whose heads are taller than those beside them is known once all tiles of a row have a view.
void BasePeopleLayout::updateLayoutViews(bool fromFrameTimer) {
  BaseLayout::updateLayoutViews(fromFrameTimer);
  if (!isSteady() || mState.mCurLayout == nullptr) {
    return;
  }
  for (Frame& frame : mState.mCurLayout->frames) {
    if (viewHeightLikeRow(frame, *mState.mCurLayout, mState.people) > kNotAlike * heightOf(frame.source)) {
      updateFrameView(frame);
    }
  }
}

// ---- Waits ----

std::uint32_t BasePeopleLayout::getWaitTimeForOtherCase(HeadPosition position) {
  return steadyReframeWait(position, waitForSingleHead(position));
}

std::uint32_t BasePeopleLayout::getOtherLayoutChangeTimer(FramingType newType,
                                                          std::stringstream& /*explanation*/,
                                                          bool peopleCountChanged) {
  const WaitRule* const wait = findPeopleWait(mState.mCurLayout->layoutType, newType, peopleCountChanged);
  return wait != nullptr && timerSettingAs<PeopleFrameTimerSetting>() != nullptr ? chooseWait(wait->wait) : 0;
}

std::uint32_t BasePeopleLayout::getWaitTime(const std::shared_ptr<Layout>& candidate,
                                            bool peopleCountChanged) {
  const auto* const setting = timerSettingAs<PeopleFrameTimerSetting>();
  if (mState.mCurLayout == nullptr || setting == nullptr) {
    return 0;
  }
  const bool havePeopleLeft = mState.mCurLayout->faceCount > candidate->faceCount;
  return steadyWait(*candidate, shortenWait(getLayoutChangeTimer(candidate->layoutType, peopleCountChanged),
                                            havePeopleLeft ? setting->peopleLeftTimerReduction : 0));
}

}  // namespace fyn::productionrules
