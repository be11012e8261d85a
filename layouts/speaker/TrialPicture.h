#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "geometry/PeopleMap.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/** What pictures of some of the people in view of one camera would be like. The people must outlive it. */
class TrialPicture {
 public:
  using Persons = std::set<std::int64_t>;

  TrialPicture(const PeopleMap& people, std::uint32_t camId);

  /** The close picture of those persons, in camera pixels. */
  Rect viewOf(const Persons& persons) const;

  /** Whether that shows all of them, and at most half of those in view, rounded up. */
  bool isClose(const Persons& persons) const;

  /** Whether they are not everybody, and have room in clearly less than the picture of everybody. */
  bool isPartOfRoom(const Persons& persons) const;

  /** Those persons, with as many of the others as the picture stays close with; who comes first goes first.
   */
  Persons withOthers(Persons persons, const std::vector<std::int64_t>& others) const;

 private:
  const PeopleMap& mPeople;
  std::uint32_t mCamId;
  /** Everybody in view. */
  Persons mAll;
};

}  // namespace fyn::productionrules
