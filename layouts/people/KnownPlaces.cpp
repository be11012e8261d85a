#include "layouts/people/KnownPlaces.h"

#include <algorithm>
#include <utility>

#include "geometry/Overlap.h"

namespace fyn::productionrules {

namespace {

constexpr std::uint32_t kRememberedMs = 60000;

// More people than these nobody frames.
constexpr std::size_t kMostPlaces = 100;

}  // namespace

double sharedPlace(const FynHead& a, const FynHead& b) {
  double most = 0;
  for (const auto& [camId, head] : b.mCamIdAssocHeadMap) {
    const Head* const other = a.findHead(camId);
    most = other != nullptr ? std::max(most, getIntersectionOverUnion(other->bbox, head->bbox)) : most;
  }
  return most;
}

void KnownPlaces::add(const std::shared_ptr<FynHead>& person, std::uint32_t now) {
  mPlaces.push_back({person, now});
  while (mPlaces.size() > kMostPlaces || now - mPlaces.front().leftAt > kRememberedMs) {
    mPlaces.pop_front();
  }
}

std::shared_ptr<FynHead> KnownPlaces::take(const FynHead& person, std::uint32_t now) {
  const auto known = std::find_if(mPlaces.begin(), mPlaces.end(), [&](const Place& place) {
    return now - place.leftAt <= kRememberedMs &&
           (place.person->id == person.id || sharedPlace(*place.person, person) >= kSamePlace);
  });
  if (known == mPlaces.end()) {
    return nullptr;
  }
  std::shared_ptr<FynHead> before = std::move(known->person);
  mPlaces.erase(known);
  return before;
}

}  // namespace fyn::productionrules
