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

ProximityTest::ProximityTest(bool useTrigger, std::uint32_t camId)
    : mTrigger(useTrigger && PrConfig::get().proximityTriggerFeatureEnabled),
      mCamId(camId),
      mImage(getCameraLensModelDimension(static_cast<int>(camId))) {}

ProximityTest::Place ProximityTest::placeOf(const FynHead& person) const {
  const Head* const head = person.findHead(mCamId);
  if (head == nullptr) {
    return {};
  }
  return {head, mTrigger ? getProxTriggerRect(head->bbox, mImage) : getHeadBufferRect(head->bbox, mImage)};
}

bool ProximityTest::doOverlap(const Place& a, const Place& b) {
  return a.head != nullptr && b.head != nullptr && isInProximity(a.area, b.area);
}

bool ProximityTest::areNeighbours(const Place& a, const Place& b) {
  return doOverlap(a, b) && a.head->id != b.head->id;
}

std::vector<Person> findProximityGroup(const Person& person, std::list<Person>& pool, bool useTrigger,
                                       std::uint32_t camId) {
  const ProximityTest test(useTrigger, camId);
  std::vector<Person> queue{person};
  for (std::size_t next = 0; next < queue.size(); ++next) {
    const ProximityTest::Place place = test.placeOf(*queue[next]);
    for (auto candidate = pool.begin(); candidate != pool.end();) {
      if (!ProximityTest::areNeighbours(place, test.placeOf(**candidate))) {
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
    if (ProximityTest::doOverlap(test.placeOf(*candidate), test.placeOf(lastVisited(members))) &&
        taken.count(candidate) == 0) {
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
