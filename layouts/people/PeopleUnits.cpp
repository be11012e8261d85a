#include "layouts/people/PeopleUnits.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <set>

#include "geometry/Proximity.h"
#include "geometry/RectMath.h"

namespace fyn::productionrules {

namespace {

/** Sets of seat indices that grow together. */
class Joiner {
 public:
  explicit Joiner(std::size_t count) : mLeader(count) { std::iota(mLeader.begin(), mLeader.end(), 0U); }

  /** The smallest index of the set. */
  std::size_t leader(std::size_t index) const {
    while (mLeader[index] != index) {
      index = mLeader[index];
    }
    return index;
  }

  void join(std::size_t a, std::size_t b) {
    const std::size_t leaderA = leader(a);
    const std::size_t leaderB = leader(b);
    mLeader[std::max(leaderA, leaderB)] = std::min(leaderA, leaderB);
  }

 private:
  std::vector<std::size_t> mLeader;
};

class UnitForming {
 public:
  explicit UnitForming(const std::vector<Seat>& seats) : mSeats(seats), mJoiner(seats.size()) {}

  /** Joins who is connected in a camera, among the seats for which `takesPart` is true. */
  template <typename Condition>
  void joinConnected(std::uint32_t camId, bool useTrigger, Condition takesPart) {
    const Pool pool = poolOf(camId, takesPart);
    for (const Pool& group : findProximityGroups(pool, useTrigger, camId)) {
      joinAll(group);
    }
  }

  /** Those who share a frame on screen stay together as far as they are still connected. */
  void keepShown(const Layout& layout) {
    for (const Frame& frame : layout.frames) {
      // A group frame shows everybody whom its camera sees, whoever came since it was made.
      const bool everybody = frame.frameType == FramingType::GROUP;
      if (everybody || frame.fynHeads.size() > 1) {
        joinConnected(frame.fynCamId, true, [&](const Seat& seat) {
          return everybody || frame.fynHeads.count(seat.person->id) != 0;
        });
      }
    }
  }

  /** Those who wait for a frame stay together while all of them are present and connected. */
  void keepPending(const Layout& layout) {
    for (const Frame& frame : layout.frames) {
      joinWhole(frame);
    }
  }

  std::vector<PeopleUnit> units() const {
    std::vector<PeopleUnit> units;
    std::vector<std::size_t> unitOfLeader(mSeats.size());
    for (std::size_t i = 0; i < mSeats.size(); ++i) {
      const std::size_t leader = mJoiner.leader(i);
      if (leader == i) {
        unitOfLeader[i] = units.size();
        units.emplace_back();
      }
      units[unitOfLeader[leader]].push_back(mSeats[i]);
    }
    return units;
  }

 private:
  using Pool = std::vector<std::shared_ptr<FynHead>>;

  template <typename Condition>
  Pool poolOf(std::uint32_t camId, Condition takesPart) const {
    Pool pool;
    for (const Seat& seat : mSeats) {
      if (seat.camId == camId && takesPart(seat)) {
        pool.push_back(seat.person);
      }
    }
    return pool;
  }

  // All or nobody: who only connected two others and has gone must leave them as they were.
  void joinWhole(const Frame& frame) {
    const auto isMember = [&](const Seat& seat) { return frame.fynHeads.count(seat.person->id) != 0; };
    const Pool pool = poolOf(frame.fynCamId, isMember);
    if (pool.size() < 2 || pool.size() != frame.fynHeads.size()) {
      return;
    }
    const std::vector<Pool> groups = findProximityGroups(pool, true, frame.fynCamId);
    if (groups.size() == 1) {
      joinAll(groups.front());
    }
  }

  void joinAll(const Pool& group) {
    const std::size_t first = indexOf(*group.front());
    for (const std::shared_ptr<FynHead>& person : group) {
      mJoiner.join(first, indexOf(*person));
    }
  }

  std::size_t indexOf(const FynHead& person) const {
    const auto seat = std::find_if(mSeats.begin(), mSeats.end(),
                                   [&](const Seat& each) { return each.person.get() == &person; });
    return static_cast<std::size_t>(seat - mSeats.begin());
  }

  const std::vector<Seat>& mSeats;
  Joiner mJoiner;
};

// How much of a head a tile may show of somebody who is not meant, of the head's width, and how much wider
// its view counts for those who have shared one.
constexpr double kStrangerWidth = 0.3;
constexpr double kWiderView = 0.08;

bool reachesIn(const Seat& seat, const Rect& view, bool doShare) {
  const Rect& head = seat.person->findHead(seat.camId)->bbox;
  const double margin = doShare ? kWiderView * widthOf(view) : 0;
  const double shown = std::min(static_cast<double>(head.right), view.right + margin) -
                       std::max(static_cast<double>(head.left), view.left - margin);
  const bool isBeside = head.bottom <= view.top || head.top >= view.bottom;
  return !isBeside && shown > (doShare ? 0 : kStrangerWidth * widthOf(head));
}

using People = std::set<std::int64_t>;

bool areAllPresent(const People& people, const std::vector<PeopleUnit>& units) {
  return std::all_of(people.begin(), people.end(), [&units](std::int64_t id) {
    return std::any_of(units.begin(), units.end(), [id](const PeopleUnit& unit) {
      return std::any_of(unit.begin(), unit.end(), [id](const Seat& seat) { return seat.person->id == id; });
    });
  });
}

// Who shares a frame. One that waits must have all its people: who is gone again has joined nobody.
std::vector<const People*> sharedFrames(const std::vector<PeopleUnit>& units, const Layout* current,
                                        const Layout* pending) {
  std::vector<const People*> shared;
  for (const Layout* const layout : {current, pending}) {
    if (layout == nullptr) {
      continue;
    }
    for (const Frame& frame : layout->frames) {
      if (frame.frameType == FramingType::PROXIMITY &&
          (layout == current || areAllPresent(frame.fynHeads, units))) {
        shared.push_back(&frame.fynHeads);
      }
    }
  }
  return shared;
}

bool haveShared(const Seat& seat, const PeopleUnit& unit, const std::vector<const People*>& shared) {
  return std::any_of(shared.begin(), shared.end(), [&](const People* people) {
    return people->count(seat.person->id) != 0 &&
           std::any_of(unit.begin(), unit.end(),
                       [&](const Seat& each) { return people->count(each.person->id) != 0; });
  });
}

}  // namespace

std::vector<PeopleUnit> formUnits(const std::vector<Seat>& seats, const Layout* current,
                                  const Layout* pending) {
  UnitForming forming(seats);
  for (std::size_t i = 0; i < seats.size(); ++i) {
    // Sorted by camera: each camera once.
    if (i == 0 || seats[i].camId != seats[i - 1].camId) {
      forming.joinConnected(seats[i].camId, false, [](const Seat&) { return true; });
    }
  }
  if (current != nullptr) {
    forming.keepShown(*current);
  }
  if (pending != nullptr) {
    forming.keepPending(*pending);
  }
  return forming.units();
}

bool joinByView(std::vector<PeopleUnit>& units, const std::vector<Rect>& views, const Layout* current,
                const Layout* pending) {
  const std::vector<const People*> shared = sharedFrames(units, current, pending);
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto isShown = [&](const Seat& seat) {
      return seat.camId == units[i].front().camId &&
             reachesIn(seat, views[i], haveShared(seat, units[i], shared));
    };
    for (std::size_t j = 0; j < units.size(); ++j) {
      if (i != j && std::any_of(units[j].begin(), units[j].end(), isShown)) {
        PeopleUnit& first = units[std::min(i, j)];
        const PeopleUnit& second = units[std::max(i, j)];
        first.insert(first.end(), second.begin(), second.end());
        units.erase(units.begin() + static_cast<std::ptrdiff_t>(std::max(i, j)));
        return true;
      }
    }
  }
  return false;
}

std::vector<PeopleUnit> unitsOfOne(const std::vector<Seat>& seats) {
  std::vector<PeopleUnit> units;
  units.reserve(seats.size());
  for (const Seat& seat : seats) {
    units.push_back({seat});
  }
  return units;
}

}  // namespace fyn::productionrules
