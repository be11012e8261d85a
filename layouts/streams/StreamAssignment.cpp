#include "layouts/streams/StreamAssignment.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace fyn::productionrules {

namespace {

constexpr std::size_t kNoStream = std::numeric_limits<std::size_t>::max();

std::vector<PeopleUnit> unitsOf(std::vector<Seat> seats, bool joinNeighbours) {
  std::vector<PeopleUnit> units;
  if (joinNeighbours) {
    formUnits(std::move(seats), nullptr, nullptr, units);
  } else {
    unitsOfOne(std::move(seats), units);
  }
  return units;
}

}  // namespace

void StreamAssignment::resize(std::size_t count) {
  if (count > mStreams.size()) {
    mFormerCount = mStreams.size();
  }
  for (auto place = mPlaces.begin(); place != mPlaces.end();) {
    place = place->second.stream >= count ? mPlaces.erase(place) : std::next(place);
  }
  mStreams.resize(count);
}

const std::vector<std::vector<Seat>>& StreamAssignment::assign(const std::vector<Seat>& seats,
                                                               bool joinNeighbours) {
  for (std::vector<Seat>& stream : mStreams) {
    stream.clear();
  }
  if (mStreams.empty()) {
    return mStreams;
  }
  findInView(seats);
  if (mFormerCount) {
    spreadFormerLast(seats, joinNeighbours);
  }
  if (std::any_of(seats.begin(), seats.end(), [this](const Seat& each) { return find(each) == nullptr; })) {
    for (const PeopleUnit& unit : unitsOf(seats, joinNeighbours)) {
      assignUnit(unit);
    }
  }
  for (const Seat& each : seats) {
    mStreams[find(each)->stream].push_back(each);
  }
  return mStreams;
}

void StreamAssignment::findInView(const std::vector<Seat>& seats) {
  std::vector<std::int64_t> seen;
  seen.reserve(seats.size());
  for (const Seat& each : seats) {
    seen.push_back(each.person->id);
  }
  std::sort(seen.begin(), seen.end());
  // Of each stream to which somebody has returned, the first newcomer since that person was seen last.
  std::map<std::size_t, std::uint64_t> returnedTo;
  for (auto& [id, place] : mPlaces) {
    const bool wasInView = std::exchange(place.isInView, std::binary_search(seen.begin(), seen.end(), id));
    if (wasInView && !place.isInView) {
      place.left = mArrivals;
    } else if (place.isInView && !wasInView) {
      std::uint64_t& since = returnedTo.emplace(place.stream, place.left).first->second;
      since = std::min(since, place.left);
    }
  }
  for (auto place = mPlaces.begin(); place != mPlaces.end();) {
    const auto since = returnedTo.find(place->second.stream);
    const bool makesRoom =
        since != returnedTo.end() && !place->second.isShown && place->second.arrival >= since->second;
    place = makesRoom ? mPlaces.erase(place) : std::next(place);
  }
}

void StreamAssignment::assignUnit(const PeopleUnit& unit) {
  PeopleUnit newcomers;
  std::size_t stream = kNoStream;
  for (const Seat& each : unit) {
    if (const Place* const place = find(each)) {
      stream = std::min(stream, place->stream);
    } else {
      newcomers.push_back(each);
    }
  }
  if (newcomers.empty()) {
    return;
  }
  if (stream == kNoStream) {
    stream = lowestFreeOrLast();
  }
  seat(newcomers, stream);
}

void StreamAssignment::seat(const PeopleUnit& newcomers, std::size_t stream) {
  for (const Seat& each : newcomers) {
    mPlaces[each.person->id] = {stream, true, false, mArrivals++, 0};
  }
}

bool StreamAssignment::isFollowing(std::size_t stream) const {
  return std::any_of(mPlaces.begin(), mPlaces.end(), [stream](const auto& entry) {
    return entry.second.stream == stream && entry.second.isInView;
  });
}

std::size_t StreamAssignment::lowestFreeOrLast() const {
  const std::size_t last = mStreams.size() - 1;
  std::size_t stream = 0;
  while (stream < last && isFollowing(stream)) {
    ++stream;
  }
  return stream;
}

void StreamAssignment::spreadFormerLast(const std::vector<Seat>& seats, bool joinNeighbours) {
  const std::size_t formerCount = *std::exchange(mFormerCount, std::nullopt);
  std::vector<Seat> shared;
  std::copy_if(seats.begin(), seats.end(), std::back_inserter(shared), [&](const Seat& each) {
    const Place* const place = find(each);
    return place != nullptr && place->stream + 1 == formerCount;
  });
  std::vector<PeopleUnit> units = unitsOf(shared, joinNeighbours);
  std::sort(units.begin(), units.end(),
            [this](const PeopleUnit& a, const PeopleUnit& b) { return firstArrival(a) < firstArrival(b); });
  // The unit that came first stays.
  for (std::size_t i = 1; i < units.size(); ++i) {
    const std::size_t stream = lowestFreeOrLast();
    for (const Seat& each : units[i]) {
      find(each)->stream = stream;
    }
  }
}

std::uint64_t StreamAssignment::firstArrival(const PeopleUnit& unit) {
  std::uint64_t first = std::numeric_limits<std::uint64_t>::max();
  for (const Seat& each : unit) {
    first = std::min(first, find(each)->arrival);
  }
  return first;
}

StreamAssignment::Place* StreamAssignment::find(const Seat& seat) {
  const auto place = mPlaces.find(seat.person->id);
  return place != mPlaces.end() ? &place->second : nullptr;
}

void StreamAssignment::setShown(const std::vector<const std::set<std::int64_t>*>& shown) {
  for (auto entry = mPlaces.begin(); entry != mPlaces.end();) {
    Place& place = entry->second;
    place.isShown = shown[place.stream]->count(entry->first) != 0;
    entry = place.isInView || place.isShown ? std::next(entry) : mPlaces.erase(entry);
  }
}

void StreamAssignment::rename(std::int64_t before, std::int64_t now) {
  auto place = mPlaces.extract(before);
  if (!place.empty()) {
    place.key() = now;
    mPlaces.insert(std::move(place));
  }
}

}  // namespace fyn::productionrules
