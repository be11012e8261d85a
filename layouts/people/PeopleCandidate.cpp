#include "layouts/people/PeopleCandidate.h"

#include <algorithm>
#include <utility>

#include "config/PrConfig.h"
#include "geometry/GroupLayout.h"
#include "layouts/people/PeopleTiles.h"
#include "layouts/people/PeopleViews.h"

namespace fyn::productionrules {

namespace {

// Neighbours up to this number share a tile as PROXIMITY; more of them are a large proximity.
constexpr std::size_t kMaxNeighbours = 3;

std::vector<PeopleUnit> unitsOf(const BaseLayout& engine, const std::vector<Seat>& seats) {
  if (PrConfig::get().newPfFeatureEnabled) {
    return formUnits(seats, engine.getLayoutPtr().get(), engine.getNextLayoutPtr().get());
  }
  std::vector<PeopleUnit> units;
  units.reserve(seats.size());
  for (const Seat& seat : seats) {
    units.push_back({seat});
  }
  return units;
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

std::shared_ptr<Layout> oneFrame(BaseLayout& engine, const MLData& data, FramingType type,
                                 std::uint32_t camId) {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  constructGroupLayout(data.getHeads(), layout, camId);
  engine.fillPositionRect(layout);
  return layout;
}

std::shared_ptr<Layout> tilesFor(BaseLayout& engine, const std::vector<PeopleUnit>& units, FramingType type) {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  for (const PeopleUnit& unit : units) {
    addFrame(*layout, unit);
  }
  engine.fillPositionRect(layout);
  return layout;
}

// Whether every tile can be cut from its camera without cutting its people. The layout's own frames keep
// their views empty: they are computed when it is adopted.
bool canShow(BaseLayout& engine, const Layout& layout) {
  return std::all_of(layout.frames.begin(), layout.frames.end(), [&](Frame frame) {
    engine.calculateRuleOfThirdFor(frame);
    return showsWholeHeads(frame, engine.peopleMap(), engine.getImageSize(frame));
  });
}

std::shared_ptr<Layout> layoutFor(BaseLayout& engine, const MLData& data, const PeopleChoice& choice) {
  if (choice.seats.empty()) {
    return oneFrame(engine, data, FramingType::ROOM, choice.roomCamId);
  }
  if (static_cast<std::int64_t>(choice.seats.size()) <= choice.maxPeople) {
    const std::vector<PeopleUnit> units = unitsOf(engine, choice.seats);
    const FramingType type = tilesType(units);
    if (type != FramingType::GROUP) {
      std::shared_ptr<Layout> tiles = tilesFor(engine, units, type);
      if (canShow(engine, *tiles)) {
        return tiles;
      }
    }
  }
  return oneFrame(engine, data, FramingType::GROUP, choice.groupCamId);
}

}  // namespace

std::shared_ptr<Layout> makePeopleCandidate(BaseLayout& engine, const MLData& data,
                                            const PeopleChoice& choice) {
  std::shared_ptr<Layout> layout = layoutFor(engine, data, choice);
  layout->frameNumber = data.frameNumber;
  layout->faceCount = static_cast<std::int32_t>(choice.seats.size());
  return layout;
}

}  // namespace fyn::productionrules
