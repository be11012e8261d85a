#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "layouts/people/PeopleUnits.h"

namespace fyn::productionrules {

/**
 * Which person is followed by which of several streams. A person keeps the stream for as long as the person
 * is in view: persons of two streams who sit down together stay with their streams, and neighbours who part
 * keep sharing theirs. A newcomer who joins neighbours takes their stream, any other the lowest stream
 * without anybody in view, and the last stream when there is none.
 */
class StreamAssignment {
 public:
  /**
   * Changes the number of streams. Persons of streams that are no more are newcomers in the next `assign`;
   * with more streams than before, the units that came last move from the former last stream to the new
   * ones.
   */
  void resize(std::size_t count);

  /**
   * The people of every stream for one vision result; `seats` are everybody who can be shown, sorted. With
   * `joinNeighbours` off everybody is a unit of one. Without streams nobody is followed.
   */
  const std::vector<std::vector<Seat>>& assign(const std::vector<Seat>& seats, bool joinNeighbours);

  /** The person with the number `before` has another one now. */
  void rename(std::int64_t before, std::int64_t now);

  /** The people of every stream in the latest result. */
  const std::vector<std::vector<Seat>>& streams() const { return mStreams; }

  /**
   * Tells whom the picture of each stream shows, for all of them. Who is out of view and not shown is
   * forgotten. Who is shown gets the stream back on return, so that a detection missed once moves nobody;
   * newcomers who were given that stream meanwhile and have not been shown yet make room.
   */
  void setShown(const std::vector<const std::set<std::int64_t>*>& shown);

 private:
  struct Place {
    std::size_t stream = 0;
    bool isInView = false;
    bool isShown = false;
    /** Counts newcomers: who came first has the smallest number. */
    std::uint64_t arrival = 0;
    /** How many newcomers there had been when the person went out of view. */
    std::uint64_t left = 0;
  };

  Place* find(const Seat& seat);
  void findInView(const std::vector<Seat>& seats);
  void assignUnit(const PeopleUnit& unit);
  void seat(const PeopleUnit& newcomers, std::size_t stream);
  /** Whether somebody of that stream is in view. */
  bool isFollowing(std::size_t stream) const;
  std::size_t lowestFreeOrLast() const;
  void spreadFormerLast(const std::vector<Seat>& seats, bool joinNeighbours);
  std::uint64_t firstArrival(const PeopleUnit& unit);

  std::map<std::int64_t, Place> mPlaces;
  std::vector<std::vector<Seat>> mStreams;
  std::uint64_t mArrivals = 0;
  /** The number of streams before some were added, until the units of the last of them are spread. */
  std::optional<std::size_t> mFormerCount;
};

}  // namespace fyn::productionrules
