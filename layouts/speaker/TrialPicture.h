#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "geometry/PeopleMap.h"
#include "layouts/people/HeadsInView.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/** What pictures of some of the people in view of one camera would be like. People and camera must outlive
 * it. */
class TrialPicture {
 public:
  using Persons = std::set<std::int64_t>;

  TrialPicture(const PeopleMap& people, const HeadsInView& heads) : mPeople(people), mHeads(heads) {}

  /** Whether the close picture of those persons is less than so many camera pixels high; not without somebody
   * in view. */
  bool isLowerThan(double height, const Persons& persons) const;

  /** Whether it may be, with others in it or not: said without a search for the picture. */
  bool mayBeLowerThan(double height, const Persons& persons) const;

  /** Whether that picture shows all of them, and at most half of those in view, rounded up. */
  bool isClose(const Persons& persons) const;

  /** Whether they are not everybody, and have room in clearly less than the picture of everybody. */
  bool isPartOfRoom(const Persons& persons) const;

  /** Those persons, with as many of the others as the picture stays close with; who comes first goes first.
   */
  Persons withOthers(Persons persons, const std::vector<std::int64_t>& others) const;

 private:
  /** In camera pixels. */
  Rect viewOf(const Persons& persons) const;
  /** The heads of everybody in view. */
  std::vector<Rect> boundsOfAll() const;

  const PeopleMap& mPeople;
  const HeadsInView& mHeads;
};

}  // namespace fyn::productionrules
