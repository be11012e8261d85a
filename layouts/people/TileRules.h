#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/PeopleHeadFaults.h"
#include "layouts/people/Seats.h"

namespace fyn::productionrules {

/** What a people engine has chosen before tiles are given out. */
struct PeopleChoice {
  /** Everybody who can be shown, sorted. */
  std::vector<Seat> seats;
  /** With more people the layout is a group. */
  std::int32_t maxPeople = 0;
  /** The camera of a ROOM layout. */
  std::uint32_t roomCamId = 0;
  /** The camera of a GROUP layout. */
  std::uint32_t groupCamId = 0;
};

/** What the engines of people framing have in common: who gets a tile, where it lies and what it shows. */
class TileRules {
 public:
  /** The engine must outlive its rules. */
  explicit TileRules(BaseLayout& engine) : mEngine(engine) {}

  /**
   * The candidate layout: a tile for every unit; a ROOM layout for nobody; a GROUP layout for too many people
   * or units, for a single unit of more than three, and when a tile would cut somebody whom it shows. The
   * engine's people map must be that of `data`: the views are tried with it.
   */
  std::shared_ptr<Layout> makeCandidate(const MLData& data, const PeopleChoice& choice) const;

  /** The view that the frame's place would get now; nothing when it would cut somebody of the frame. */
  std::optional<RuleOfThirdsView> tryView(const Frame& frame) const;

  /** Gives the frames their tiles; one picture of all gets its place from the base. */
  void fillPositionRect(std::shared_ptr<Layout>& layout) const;

  /** With the head buffers also while proximitySquareFeature is on; false as well for heads outside the
   * image. */
  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer);

  /**
   * For neighbours, while proximitySquareFeature is on, the square around them: a view takes its width from
   * its height, so a wide box in a narrow tile would lose its sides. The base's for all others.
   */
  Rect baseRect(const Frame& frame, const Rect& box) const;

 private:
  std::shared_ptr<Layout> layoutFor(const MLData& data, const PeopleChoice& choice) const;
  std::shared_ptr<Layout> oneFrame(const MLData& data, FramingType type, std::uint32_t camId) const;
  HeadsInView headsOf(const Frame& frame) const;

  BaseLayout& mEngine;
  PeopleHeadFaults mHeadFaults;
};

}  // namespace fyn::productionrules
