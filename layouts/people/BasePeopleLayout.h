#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/PeopleHeadFaults.h"
#include "layouts/people/PeopleInputFaults.h"
#include "layouts/people/PeopleUnits.h"

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

/**
 * What the engines have in common that decide for people in tiles: who gets a tile, where it lies, what it
 * shows and how long a change waits. Which camera shows whom is the engine's own choice.
 */
class BasePeopleLayout : public BaseLayout {
 public:
  BasePeopleLayout();

  /** With the head buffers also while proximitySquareFeature is on; false as well for heads outside the
   * image. */
  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) override;

  /** Gives the frames their tiles; one picture of all gets its place from the base. */
  void fillPositionRect(std::shared_ptr<Layout>& layout) override;

  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  std::uint32_t getOtherLayoutChangeTimer(FramingType newType, std::stringstream& explanation,
                                          bool peopleCountChanged) override;

  /**
   * For neighbours, while proximitySquareFeature is on, the square around them: a view takes its width from
   * its height, so a wide box in a narrow tile would lose its sides. The base's for all others.
   */
  Rect getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& box) override;

  /** Shorter when people have left. */
  std::uint32_t getWaitTime(const std::shared_ptr<Layout>& candidate, bool peopleCountChanged) override;

 protected:
  /**
   * The candidate layout: a tile for every unit; a ROOM layout for nobody; a GROUP layout for too many people
   * or units, for a single unit of more than three, and when a tile would cut somebody whom it shows. The
   * people map must be that of `data`: the views are tried with it.
   */
  std::shared_ptr<Layout> makeCandidate(const MLData& data, const PeopleChoice& choice);

  /** The view that the frame's place would get now; nothing when it would cut somebody of the frame. */
  std::optional<RuleOfThirdsView> tryView(const Frame& frame);

  PeopleInputFaults mInputFaults;

 private:
  std::shared_ptr<Layout> layoutFor(const MLData& data, const PeopleChoice& choice);
  std::shared_ptr<Layout> oneFrame(const MLData& data, FramingType type, std::uint32_t camId);
  std::vector<PeopleUnit> unitsOf(const std::vector<Seat>& seats) const;

  PeopleHeadFaults mHeadFaults;
};

}  // namespace fyn::productionrules
