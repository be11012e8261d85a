#include "layouts/people/PeopleUnits.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <set>
#include <utility>

#include "geometry/Proximity.h"
#include "geometry/RectMath.h"

namespace fyn::productionrules {

namespace {

// In the memory of an earlier one.
PeopleUnit& emptyUnit(std::vector<PeopleUnit>& units, std::size_t place) {
  if (place == units.size()) {
    return units.emplace_back();
  }
  units[place].clear();
  return units[place];
}

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
  explicit UnitForming(std::vector<Seat> seats) : mSeats(std::move(seats)), mJoiner(mSeats.size()) {}

  const std::vector<Seat>& seats() const { return mSeats; }

  /** Joins who is connected in a camera, among the seats for which `takesPart` is true. */
  template <typename Condition>
  void joinConnected(std::uint32_t camId, bool useTrigger, Condition takesPart) {
    joinNeighbours(camId, useTrigger, takesPart, mJoiner);
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

  /** Takes the seats along. */
  void takeUnits(std::vector<PeopleUnit>& units) {
    std::size_t count = 0;
    for (std::size_t first = 0; first < mSeats.size(); ++first) {
      if (mJoiner.leader(first) != first) {
        continue;
      }
      PeopleUnit& unit = emptyUnit(units, count++);
      for (std::size_t i = first; i < mSeats.size(); ++i) {
        if (mJoiner.leader(i) == first) {
          unit.push_back(std::move(mSeats[i]));
        }
      }
    }
    units.resize(count);
  }

 private:
  template <typename Condition>
  void joinNeighbours(std::uint32_t camId, bool useTrigger, Condition takesPart, Joiner& joiner) {
    const ProximityTest test(useTrigger, camId);
    mPlaces.assign(mSeats.size(), {});
    for (std::size_t i = 0; i < mSeats.size(); ++i) {
      if (mSeats[i].camId == camId && takesPart(mSeats[i])) {
        mPlaces[i] = test.placeOf(*mSeats[i].person);
      }
      for (std::size_t before = 0; before < i; ++before) {
        if (ProximityTest::areNeighbours(mPlaces[before], mPlaces[i])) {
          joiner.join(before, i);
        }
      }
    }
  }

  // All or nobody: who only connected two others and has gone must leave them as they were.
  void joinWhole(const Frame& frame) {
    const auto isMember = [&](const Seat& seat) { return frame.fynHeads.count(seat.person->id) != 0; };
    std::vector<std::size_t> members;
    for (std::size_t i = 0; i < mSeats.size(); ++i) {
      if (mSeats[i].camId == frame.fynCamId && isMember(mSeats[i])) {
        members.push_back(i);
      }
    }
    if (members.size() < 2 || members.size() != frame.fynHeads.size()) {
      return;
    }
    Joiner among(mSeats.size());
    joinNeighbours(frame.fynCamId, true, isMember, among);
    const auto isJoined = [&](std::size_t member) { return among.leader(member) == members.front(); };
    if (std::all_of(members.begin(), members.end(), isJoined)) {
      for (const std::size_t member : members) {
        mJoiner.join(members.front(), member);
      }
    }
  }

  std::vector<Seat> mSeats;
  /** As they were last looked at. */
  std::vector<ProximityTest::Place> mPlaces;
  Joiner mJoiner;
};

// How much of a head a tile may show of somebody who is not meant, of the head's width, and how much wider
// its view counts for those who have shared one.
constexpr double kStrangerWidth = 0.3;
constexpr double kWiderView = 0.08;

// Whether the view with that margin at its sides shows more than `least` of the head's width.
bool reachesIn(const Rect& head, const Rect& view, double margin, double least) {
  const double shown = std::min(static_cast<double>(head.right), view.right + margin) -
                       std::max(static_cast<double>(head.left), view.left - margin);
  return shown > least && head.bottom > view.top && head.top < view.bottom;
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

void formUnits(std::vector<Seat> ordered, const Layout* current, const Layout* pending,
               std::vector<PeopleUnit>& units) {
  UnitForming forming(std::move(ordered));
  const std::vector<Seat>& seats = forming.seats();
  for (std::size_t i = 0; i < seats.size(); ++i) {
    const std::uint32_t camId = seats[i].camId;
    if (std::none_of(seats.data(), seats.data() + i, [=](const Seat& seat) { return seat.camId == camId; })) {
      forming.joinConnected(camId, false, [](const Seat&) { return true; });
    }
  }
  if (current != nullptr) {
    forming.keepShown(*current);
  }
  if (pending != nullptr) {
    forming.keepPending(*pending);
  }
  forming.takeUnits(units);
}

bool joinByView(std::vector<PeopleUnit>& units, const std::vector<Rect>& views, const Layout* current,
                const Layout* pending) {
  const std::vector<const People*> shared = sharedFrames(units, current, pending);
  for (std::size_t i = 0; i < units.size(); ++i) {
    const Rect view = views[i];
    const double margin = kWiderView * widthOf(view);
    const std::uint32_t camId = units[i].front().camId;
    const auto isShown = [&](const Seat& seat) {
      const Head* const seen = seat.person->findHead(camId);
      if (seen == nullptr) {
        return false;
      }
      const Rect& head = seen->bbox;
      // Most are far from the view, however wide.
      return reachesIn(head, view, margin, 0) &&
             (haveShared(seat, units[i], shared) || reachesIn(head, view, 0, kStrangerWidth * widthOf(head)));
    };
    for (std::size_t j = 0; j < units.size(); ++j) {
      // Who is alone in the tile of another camera comes over. Counted: any_of, unrolled around the test,
      // makes a decision for eight a twentieth dearer.
      const bool canJoin = i != j && (units[j].front().camId == camId || units[j].size() == 1);
      if (canJoin && std::count_if(units[j].begin(), units[j].end(), isShown) != 0) {
        units[j].front().camId = camId;
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

void orderAsShown(std::vector<PeopleUnit>& units, const Layout& shown) {
  const std::vector<Frame>& frames = shown.frames;
  if (units.size() != frames.size()) {
    return;
  }
  const std::uint32_t camId = frames.front().fynCamId;
  const bool isOfOneCamera = std::all_of(frames.begin(), frames.end(),
                                         [=](const Frame& frame) { return frame.fynCamId == camId; }) &&
                             std::all_of(units.begin(), units.end(),
                                         [=](const PeopleUnit& unit) { return unit.front().camId == camId; });
  if (isOfOneCamera) {
    return;
  }
  std::vector<PeopleUnit> ordered;
  for (const Frame& frame : frames) {
    const auto unit = std::find_if(units.begin(), units.end(), [&](const PeopleUnit& each) {
      return each.size() == frame.fynHeads.size() &&
             std::all_of(each.begin(), each.end(),
                         [&](const Seat& seat) { return frame.fynHeads.count(seat.person->id) != 0; });
    });
    if (unit == units.end()) {
      return;
    }
    ordered.push_back(*unit);
  }
  units = std::move(ordered);
}

void unitsOfOne(std::vector<Seat> seats, std::vector<PeopleUnit>& units) {
  for (std::size_t i = 0; i < seats.size(); ++i) {
    emptyUnit(units, i).push_back(std::move(seats[i]));
  }
  units.resize(seats.size());
}

}  // namespace fyn::productionrules
