#include "layouts/people/TileRules.h"

#include <algorithm>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/GroupLayout.h"
#include "geometry/ProximityRect.h"
#include "layouts/people/PeopleTiles.h"
#include "layouts/people/PeopleUnits.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// Neighbours up to this number share a tile as PROXIMITY; more of them are a large proximity.
constexpr std::size_t kMaxNeighbours = 3;

std::vector<PeopleUnit> unitsOf(const BaseLayout& engine, const std::vector<Seat>& seats) {
  return PrConfig::get().newPfFeatureEnabled
             ? formUnits(seats, engine.getLayoutPtr().get(), engine.getNextLayoutPtr().get())
             : unitsOfOne(seats);
}

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

}  // namespace

// ---- Candidates ----

std::shared_ptr<Layout> TileRules::makeCandidate(const MLData& data, const PeopleChoice& choice) const {
  std::shared_ptr<Layout> layout = layoutFor(data, choice);
  layout->frameNumber = data.frameNumber;
  layout->faceCount = static_cast<std::int32_t>(choice.seats.size());
  return layout;
}

std::shared_ptr<Layout> TileRules::layoutFor(const MLData& data, const PeopleChoice& choice) const {
  if (choice.seats.empty()) {
    return oneFrame(data, FramingType::ROOM, choice.roomCamId);
  }
  const bool isTooMany = static_cast<std::int64_t>(choice.seats.size()) > choice.maxPeople;
  const std::vector<PeopleUnit> units =
      isTooMany ? std::vector<PeopleUnit>() : unitsOf(mEngine, choice.seats);
  const FramingType type = isTooMany ? FramingType::GROUP : tilesType(units);
  if (type == FramingType::GROUP) {
    return oneFrame(data, FramingType::GROUP, choice.groupCamId);
  }
  auto tiles = std::make_shared<Layout>();
  tiles->layoutType = type;
  for (const PeopleUnit& unit : units) {
    addFrame(*tiles, unit);
  }
  mEngine.fillPositionRect(tiles);
  const bool showsAll = std::all_of(tiles->frames.begin(), tiles->frames.end(),
                                    [this](const Frame& frame) { return tryView(frame).has_value(); });
  return showsAll ? tiles : oneFrame(data, FramingType::GROUP, choice.groupCamId);
}

std::shared_ptr<Layout> TileRules::oneFrame(const MLData& data, FramingType type, std::uint32_t camId) const {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  constructGroupLayout(data.getHeads(), layout, camId);
  mEngine.fillPositionRect(layout);
  return layout;
}

void TileRules::fillPositionRect(std::shared_ptr<Layout>& layout) const {
  if (hasTiles(*layout)) {
    placeInTiles(*layout);
  } else {
    mEngine.BaseLayout::fillPositionRect(layout);
  }
}

// ---- Views ----

std::optional<RuleOfThirdsView> TileRules::tryView(const Frame& frame) const {
  const HeadsInView heads = headsOf(frame);
  Rect box;
  // The base's box: a trial must not count as a report of heads that are missing.
  if (heads.misses(mEngine.peopleMap(), frame.fynHeads) ||
      !mEngine.BaseLayout::constructBoundingBox(frame, box, PrConfig::get().proximitySquareFeature)) {
    return std::nullopt;
  }
  const RuleOfThirdsView view = mEngine.ruleOfThirdsView(frame, box);
  return heads.areWhole(mEngine.peopleMap(), frame.fynHeads, view.source) ? std::optional(view)
                                                                          : std::nullopt;
}

bool TileRules::constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) {
  return mHeadFaults.report(frame, mEngine.peopleMap()) &&
         !headsOf(frame).misses(mEngine.peopleMap(), frame.fynHeads) &&
         mEngine.BaseLayout::constructBoundingBox(frame, box,
                                                  withHeadBuffer || PrConfig::get().proximitySquareFeature);
}

Rect TileRules::baseRect(const Frame& frame, const Rect& box) const {
  if (frame.frameType != FramingType::PROXIMITY || !PrConfig::get().proximitySquareFeature) {
    return mEngine.BaseLayout::getBaseRectForRuleofThirdsFrame(frame, box);
  }
  return getProximitySquare(box, getCameraLensModelDimension(static_cast<int>(frame.fynCamId)));
}

HeadsInView TileRules::headsOf(const Frame& frame) const {
  return {frame.fynCamId, mEngine.getImageSize(frame), HeadRule::PartlyInImage};
}

}  // namespace fyn::productionrules
