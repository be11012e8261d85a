#include "tools/meeting/SeatedMeeting.h"

#include <algorithm>

namespace fyn::productionrules {

namespace {

constexpr std::uint64_t kSeatsStream = 5'000'000;
constexpr std::uint64_t kPlansStream = 5'000'001;
constexpr std::uint64_t kPeopleStream = 5'001'000;
constexpr std::uint64_t kPassersByStream = 5'002'000;

/** Metres. */
constexpr double kAisleBehindSeats = 0.8;
/** Beside whoever stands there throughout. */
constexpr double kBesideBoard = 0.6;

/** A time between two parts of a hundred of the meeting. */
std::int64_t timeIn(Random& random, std::int64_t duration, std::int64_t from, std::int64_t to) {
  return random.between(duration * from / 100, duration * to / 100);
}

}  // namespace

const std::array<MovementKind, 4> kMovementKinds{{
    {"come-late", &Movements::comeLate, true,
     "How many of the people come late, in a bunch, after a fifth to two fifths of the time"},
    {"leave-early", &Movements::leaveEarly, true,
     "How many of the people leave before the end, one by one, after three fifths of the time"},
    {"go-to-board", &Movements::goToBoard, false,
     "How often somebody gets up, shows something at the board at the back, and sits down again"},
    {"walk-through", &Movements::walkThrough, false,
     "How many others walk through behind the people, from one border of the picture to the other"},
}};

SeatedMeeting::SeatedMeeting(std::uint64_t seed, const Seating& seating, int people,
                             const Movements& movements, std::int64_t duration)
    : mSeed(seed), mMovements(movements), mDuration(duration) {
  Random random(seed, kSeatsStream);
  mSeats = placesOf(seating, people, random);
  for (const Place& seat : mSeats) {
    mRoom.aisle = std::max(mRoom.aisle, seat.z + kAisleBehindSeats);
  }
  mRoom.aisle = std::max(mRoom.aisle, 3.0);
  mRoom.door = random.chance(500'000) ? -1 : 1;
  mRoom.board = {0.55 * mRoom.aisle - kBesideBoard, mRoom.aisle, kStanding, -20, 0};
}

std::vector<SeatedMeeting::Plan> SeatedMeeting::plans() const {
  Random random(mSeed, kPlansStream);
  std::vector<Plan> plans(mSeats.size());
  for (Plan& plan : plans) {
    plan.departure = mDuration + 1000;
  }
  // The last of the people come late and leave, so that those who speak first are there throughout.
  std::int64_t arrival = timeIn(random, mDuration, 20, 40);
  for (int i = 0; i < mMovements.comeLate; ++i) {
    plans[plans.size() - 1 - static_cast<std::size_t>(i)].arrival = arrival;
    arrival += random.between(700, 2500);
  }
  for (int i = 0; i < mMovements.leaveEarly; ++i) {
    plans[plans.size() - 1 - static_cast<std::size_t>(i)].departure = timeIn(random, mDuration, 60, 85);
  }
  const auto movers = static_cast<std::size_t>(std::max(mMovements.comeLate, mMovements.leaveEarly));
  const std::size_t stayers = movers < plans.size() ? plans.size() - movers : plans.size();
  for (int i = 0; i < mMovements.goToBoard && !plans.empty(); ++i) {
    const std::int64_t slot = mDuration * 7 / 10 / mMovements.goToBoard;
    const std::int64_t start = mDuration * 15 / 100 + i * slot + random.between(0, slot / 4);
    plans[random.below(stayers)].visits.push_back({start, std::min(slot / 3, random.between(15000, 45000))});
  }
  return plans;
}

PersonPath SeatedMeeting::play(std::size_t person, const Plan& plan) const {
  const Random random(mSeed, kPeopleStream + person);
  const Place& seat = mSeats[person];
  const bool isLate = plan.arrival > 0;
  RoomActor actor = isLate ? RoomActor::outside(random, mRoom, seat, plan.arrival, mRoom.door)
                           : RoomActor::seated(random, mRoom, seat, 0);
  if (isLate) {
    actor.takeSeat();
  }
  for (const BoardVisit& visit : plan.visits) {
    actor.sitUntil(visit.start);
    actor.showAtBoard(visit.duration);
  }
  actor.sitUntil(plan.departure);
  if (plan.departure < mDuration) {
    actor.goOut(mRoom.door);
  }
  return actor.path();
}

std::vector<PersonPath> SeatedMeeting::people() const {
  std::vector<PersonPath> paths;
  std::size_t person = 0;
  for (const Plan& plan : plans()) {
    paths.push_back(play(person++, plan));
  }
  return paths;
}

std::vector<PersonPath> SeatedMeeting::passersBy() const {
  std::vector<PersonPath> paths;
  for (int i = 0; i < mMovements.walkThrough; ++i) {
    Random random(mSeed, kPassersByStream + static_cast<std::uint64_t>(i));
    const std::int64_t slot = mDuration * 8 / 10 / mMovements.walkThrough;
    const std::int64_t start = mDuration / 10 + i * slot + random.between(0, slot / 2);
    const double side = random.chance(500'000) ? -1 : 1;
    const Place noSeat{0, mRoom.aisle, kSeated + static_cast<double>(random.between(-8, 8)) / 100, 0, 0};
    RoomActor actor = RoomActor::outside(random, mRoom, noSeat, start, side);
    actor.walkOut(-side);
    paths.push_back(actor.path());
  }
  return paths;
}

}  // namespace fyn::productionrules
