#include "layouts/people/BasePeopleLayout.h"

#include <algorithm>
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

void addFrame(Layout& layout, const PeopleUnit& unit) {
  Frame frame;
  frame.frameIndex = static_cast<std::int32_t>(layout.frames.size());
  frame.frameType = unit.size() > 1 ? FramingType::PROXIMITY : FramingType::HEAD;
  frame.fynCamId = unit.front().camId;
  for (const Seat& seat : unit) {
    frame.heads.insert(seat.person->findHead(seat.camId)->id);
    frame.fynHeads.insert(seat.person->id);
  }
  std::int32_t& counter = unit.size() == 1                ? layout.headFrameCount
                          : unit.size() <= kMaxNeighbours ? layout.proximityFrameCount
                                                          : layout.largeProximityFrameCount;
  ++counter;
  layout.frames.push_back(std::move(frame));
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
  std::shared_ptr<Layout> layout = layoutFor(data, choice);
  layout->frameNumber = data.frameNumber;
  layout->faceCount = static_cast<std::int32_t>(hasTiles(*layout) ? choice.seats.size() : people);
  return layout;
}

// When tiles are tried, only who may have one stays in the choice.
std::shared_ptr<Layout> BasePeopleLayout::layoutFor(const MLData& data, PeopleChoice& choice) {
  if (choice.seats.empty()) {
    return oneFrame(data, FramingType::ROOM, choice.roomCamId, "");
  }
  const bool walks = std::any_of(choice.seats.begin(), choice.seats.end(),
                                 [this](const Seat& seat) { return hasWalked(*seat.person); });
  const bool isTooMany = static_cast<std::int64_t>(choice.seats.size()) > choice.maxPeople;
  const bool looks = isFirstLook() && isInViewOf(choice.groupCamId, choice.seats);
  const bool isOpen = walks || isTooMany || looks;
  std::shared_ptr<Layout> tiles;
  if (!isOpen) {
    keepSettled(choice.seats);
    tiles = tilesFor(choice.seats);
  }
  const char* const reason = walks                                    ? "somebody walks"
                             : looks                                  ? kFirstLook
                             : tiles != nullptr && isUnsettled(tiles) ? kUnsettled
                                                                      : "";
  return tiles != nullptr && *reason == '\0' ? tiles
                                             : oneFrame(data, FramingType::GROUP, choice.groupCamId, reason);
}

// Null when there are no tiles for these people.
std::shared_ptr<Layout> BasePeopleLayout::tilesFor(std::vector<Seat> seats) {
  std::vector<PeopleUnit> units = unitsOf(std::move(seats));
  while (true) {
    auto tiles = std::make_shared<Layout>();
    tiles->layoutType = tilesType(units);
    if (tiles->layoutType == FramingType::GROUP) {
      return nullptr;
    }
    tiles->frames.reserve(units.size());
    for (const PeopleUnit& unit : units) {
      addFrame(*tiles, unit);
    }
    fillPositionRect(tiles);
    std::vector<Rect> views;
    views.reserve(units.size());
    for (const Frame& frame : tiles->frames) {
      const std::optional<RuleOfThirdsView> view = tryView(frame);
      if (!view) {
        return nullptr;
      }
      views.push_back(view->source);
    }
    if (!PrConfig::get().newPfFeatureEnabled ||
        !joinByView(units, views, mState.mCurLayout.get(), mState.mNextLayout.get())) {
      return areLargerThanGroup(*tiles, views) ? tiles : nullptr;
    }
  }
}

std::vector<PeopleUnit> BasePeopleLayout::unitsOf(std::vector<Seat> seats) const {
  return PrConfig::get().newPfFeatureEnabled
             ? formUnits(std::move(seats), mState.mCurLayout.get(), mState.mNextLayout.get())
             : unitsOfOne(std::move(seats));
}

std::shared_ptr<Layout> BasePeopleLayout::oneFrame(const MLData& data, FramingType type, std::uint32_t camId,
                                                   const char* reason) {
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
  const HeadsInView heads(frame.fynCamId, getImageSize(frame), HeadRule::PartlyInImage);
  Rect box;
  // The base's box: a trial must not count as a report of heads that are missing.
  if (!heads.holdsAll(mState.people, frame.fynHeads) ||
      !BaseLayout::constructBoundingBox(frame, box, PrConfig::get().proximitySquareFeature)) {
    return std::nullopt;
  }
  const RuleOfThirdsView view = ruleOfThirdsView(frame, box);
  return heads.areWhole(mState.people, frame.fynHeads, view.source) ? std::optional(view) : std::nullopt;
}

bool BasePeopleLayout::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return mHeadFaults.allowFraming(frame, mState.people, getImageSize(frame)) &&
         BaseLayout::constructBoundingBox(frame, box,
                                          withHeadBuffer || PrConfig::get().proximitySquareFeature);
}

Rect BasePeopleLayout::getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& latest) {
  const Rect resting = restingBox(frame, latest);
  if (!(resting == latest)) {
    TileView view = tileView(frame, resting);
    if (HeadsInView(frame.fynCamId, getImageSize(frame), HeadRule::PartlyInImage)
            .isWhole(latest, view.view())) {
      return view.box();
    }
  }
  return tileView(frame, latest).box();
}

TileView BasePeopleLayout::tileView(const Frame& frame, const Rect& box) {
  const bool isSquare = frame.frameType == FramingType::PROXIMITY && PrConfig::get().proximitySquareFeature;
  const Rect base =
      isSquare ? getProximitySquare(box, getCameraLensModelDimension(static_cast<int>(frame.fynCamId)))
               : BaseLayout::getBaseRectForRuleofThirdsFrame(frame, box);
  TileView view(frame, getImageSize(frame), base);
  view.growToHeight(leastViewHeight(frame));
  if (isSteady()) {
    fitAmongOthers(view, frame, box);
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
