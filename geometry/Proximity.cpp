#include "geometry/Proximity.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <numeric>

#include "config/PrConfig.h"
#include "geometry/FramePredicates.h"
#include "geometry/HeadBuffer.h"
#include "geometry/ProximityRect.h"
#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

using Person = std::shared_ptr<FynHead>;

/** Makes the proximity rectangles of one walk: one camera, one kind of rectangle. */
class ProximityTest {
 public:
  ProximityTest(bool useTrigger, std::uint32_t camId)
      : mTrigger(useTrigger && PrConfig::get().proximityTriggerFeatureEnabled),
        mCamId(camId),
        mImage(getCameraLensModelDimension(static_cast<int>(camId))) {}

  const Head* headOf(const FynHead& person) const { return person.findHead(mCamId); }

  Rect rectOf(const Head& head) const {
    return mTrigger ? getProxTriggerRect(head.bbox, mImage) : getHeadBufferRect(head.bbox, mImage);
  }

  bool areNeighbours(const FynHead& a, const FynHead& b) const {
    const Head* const headA = headOf(a);
    const Head* const headB = headOf(b);
    return headA != nullptr && headB != nullptr && isInProximity(rectOf(*headA), rectOf(*headB));
  }

 private:
  bool mTrigger;
  std::uint32_t mCamId;
  Dimension mImage;
};

/** Hashes by person id, so that the visiting order of a set does not depend on where persons lie in memory.
 */
struct PersonIdHash {
  std::size_t operator()(const FynHead* person) const noexcept {
    return std::hash<std::int32_t>{}(person->id);
  }
};

using MemberSet = std::unordered_set<const FynHead*, PersonIdHash>;

/** `members` is never empty. */
const FynHead& lastVisited(const MemberSet& members) {
  const FynHead* last = *members.begin();
  for (const FynHead* member : members) {
    last = member;
  }
  return *last;
}

}  // namespace

std::vector<Person> findProximityGroup(const Person& person, std::list<Person>& pool, bool useTrigger,
                                       std::uint32_t camId) {
  const ProximityTest test(useTrigger, camId);
  std::vector<Person> queue{person};
  for (std::size_t next = 0; next < queue.size(); ++next) {
    const Head* const head = test.headOf(*queue[next]);
    if (head == nullptr) {
      continue;
    }
    const Rect area = test.rectOf(*head);
    for (auto candidate = pool.begin(); candidate != pool.end();) {
      const Head* const other = test.headOf(**candidate);
      if (other == nullptr || other->id == head->id || !isInProximity(area, test.rectOf(*other))) {
        ++candidate;
        continue;
      }
      if (std::find(queue.begin(), queue.end(), *candidate) == queue.end()) {
        queue.push_back(*candidate);
      }
      candidate = pool.erase(candidate);
    }
  }
  return queue;
}

std::vector<std::vector<Person>> findProximityGroups(const std::vector<Person>& persons, bool useTrigger,
                                                     std::uint32_t camId) {
  struct Place {
    const Head* head = nullptr;
    Rect area;
  };
  const ProximityTest test(useTrigger, camId);
  std::vector<Place> places;
  places.reserve(persons.size());
  for (const Person& person : persons) {
    const Head* const head = test.headOf(*person);
    places.push_back({head, head != nullptr ? test.rectOf(*head) : Rect()});
  }
  // Who is in no group yet, in order.
  std::vector<std::size_t> pool(persons.size());
  std::iota(pool.begin(), pool.end(), 0U);
  std::vector<std::vector<Person>> groups;
  std::vector<std::size_t> queue;
  while (!pool.empty()) {
    queue.assign(1, pool.front());
    pool.erase(pool.begin());
    for (std::size_t next = 0; next < queue.size(); ++next) {
      const Place place = places[queue[next]];
      const auto joins = [&](std::size_t other) {
        return place.head != nullptr && places[other].head != nullptr &&
               places[other].head->id != place.head->id && isInProximity(place.area, places[other].area);
      };
      std::copy_if(pool.begin(), pool.end(), std::back_inserter(queue), joins);
      pool.erase(std::remove_if(pool.begin(), pool.end(), joins), pool.end());
    }
    std::vector<Person>& group = groups.emplace_back();
    for (const std::size_t index : queue) {
      group.push_back(persons[index]);
    }
  }
  return groups;
}

std::set<Person> calculateProximityFor(const Person& person, std::list<Person>& pool, bool useTrigger,
                                       std::uint32_t camId) {
  const std::vector<Person> group = findProximityGroup(person, pool, useTrigger, camId);
  return {group.begin(), group.end()};
}

std::vector<Person> getProximityHeads(const Person& person, const std::vector<Person>& candidates,
                                      std::unordered_set<Person>& taken, bool useTrigger,
                                      std::uint32_t camId) {
  const ProximityTest test(useTrigger, camId);
  MemberSet members{person.get()};
  std::vector<Person> group;
  for (const Person& candidate : candidates) {
    if (candidate == person) {
      continue;
    }
    // Only the member visited last decides; kept: frames must land on the same pixels.
    if (test.areNeighbours(*candidate, lastVisited(members)) && taken.count(candidate) == 0) {
      members.insert(candidate.get());
      group.push_back(candidate);
      taken.insert(candidate);
    }
  }
  return group;
}

bool isProximityMaintained(const Frame& frame, const PeopleMap& persons) {
  std::list<Person> framed;
  for (const std::int64_t id : frame.fynHeads) {
    const auto found = persons.find(id);
    if (found != persons.end()) {
      framed.push_back(found->second);
    }
  }
  if (framed.empty()) {
    PRB_LOGD("FramingUtil", "%s Cannot calculate proximity on empty list!", __func__);
    return false;
  }
  const Person first = framed.front();
  const std::vector<Person> group = findProximityGroup(first, framed, true, FynHead::kNoCamera);
  // Compared with the head ids of the camera, not with the persons; kept: frames must land on the same
  // pixels.
  return group.size() == frame.heads.size();
}

}  // namespace fyn::productionrules
