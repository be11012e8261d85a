#include "layouts/people/PeopleUnits.h"

#include <algorithm>
#include <cstddef>
#include <list>
#include <numeric>

#include "geometry/Proximity.h"

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
    Pool pool = poolOf(camId, takesPart);
    while (!pool.empty()) {
      const std::shared_ptr<FynHead> first = pool.front();
      pool.pop_front();
      const std::size_t firstIndex = indexOf(*first);
      for (const std::shared_ptr<FynHead>& person : findProximityGroup(first, pool, useTrigger, camId)) {
        mJoiner.join(firstIndex, indexOf(*person));
      }
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
  using Pool = std::list<std::shared_ptr<FynHead>>;

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
    Pool pool = poolOf(frame.fynCamId, isMember);
    if (pool.size() < 2 || pool.size() != frame.fynHeads.size()) {
      return;
    }
    const std::shared_ptr<FynHead> first = pool.front();
    pool.pop_front();
    const auto group = findProximityGroup(first, pool, true, frame.fynCamId);
    if (!pool.empty()) {
      return;
    }
    for (const std::shared_ptr<FynHead>& person : group) {
      mJoiner.join(indexOf(*first), indexOf(*person));
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

std::vector<PeopleUnit> unitsOfOne(const std::vector<Seat>& seats) {
  std::vector<PeopleUnit> units;
  units.reserve(seats.size());
  for (const Seat& seat : seats) {
    units.push_back({seat});
  }
  return units;
}

}  // namespace fyn::productionrules
