#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tools/meeting/Motion.h"
#include "tools/meeting/RoomActor.h"

namespace fyn::productionrules {

/** How many people do what in a meeting with fixed seats. */
struct Movements {
  int comeLate = 0;
  int leaveEarly = 0;
  int goToBoard = 0;
  int walkThrough = 0;
};

/** A row of the table of movements: from it come the options and the help. */
struct MovementKind {
  const char* option;
  int Movements::*count;
  /** Whether no more people can do it than there are. */
  bool isOfThePeople;
  const char* help;
};

extern const std::array<MovementKind, 4> kMovementKinds;

/** A meeting of people who stay at their seats but for the movements. */
class SeatedMeeting {
 public:
  /** `duration` in milliseconds. */
  SeatedMeeting(std::uint64_t seed, const Seating& seating, int people, const Movements& movements,
                std::int64_t duration);

  /** Those who sit here, or come late; all of them are there at some time. */
  std::vector<PersonPath> people() const;

  /** Those who only walk through the room. */
  std::vector<PersonPath> passersBy() const;

 private:
  struct BoardVisit {
    std::int64_t start;
    std::int64_t duration;
  };

  /** What one of the people does. */
  struct Plan {
    std::int64_t arrival = 0;
    std::vector<BoardVisit> visits;
    std::int64_t departure = 0;
  };

  std::vector<Plan> plans() const;
  PersonPath play(std::size_t person, const Plan& plan) const;

  const std::uint64_t mSeed;
  const Movements mMovements;
  const std::int64_t mDuration;
  std::vector<Place> mSeats;
  RoomPlan mRoom;
};

}  // namespace fyn::productionrules
