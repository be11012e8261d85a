#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <set>
#include <unordered_set>
#include <vector>

#include "geometry/PeopleMap.h"
#include "model/Frame.h"
#include "model/FynHead.h"

/**
 * Who sits with whom in camera `camId` (FynHead::kNoCamera: in the first camera of each person). Two persons
 * are neighbours when their proximity rectangles overlap: the trigger rectangle of the head when `useTrigger`
 * is set and proximityTriggerFeatureEnabled is on, else the head with its buffer.
 */
namespace fyn::productionrules {

/** Makes the proximity rectangles of one camera, of one kind, and compares them. */
class ProximityTest {
 public:
  /** Where a person is in the camera; nobody's neighbour without a head. Valid as long as the person. */
  struct Place {
    const Head* head = nullptr;
    Rect area;
  };

  ProximityTest(bool useTrigger, std::uint32_t camId);

  Place placeOf(const FynHead& person) const;

  static bool doOverlap(const Place& a, const Place& b);

  /** The same, but two places with one head id are no neighbours. */
  static bool areNeighbours(const Place& a, const Place& b);

 private:
  bool mTrigger;
  std::uint32_t mCamId;
  Dimension mImage;
};

/**
 * `person` first, then everybody who is reachable from it over neighbours, in the order found, each once. Who
 * is found leaves the pool. Persons without a head in the camera, and two persons with one head id, are no
 * neighbours.
 */
std::vector<std::shared_ptr<FynHead>> findProximityGroup(const std::shared_ptr<FynHead>& person,
                                                         std::list<std::shared_ptr<FynHead>>& pool,
                                                         bool useTrigger, std::uint32_t camId);

/** The same as a set, for hosts. Its order is that of addresses: the engines use findProximityGroup. */
std::set<std::shared_ptr<FynHead>> calculateProximityFor(const std::shared_ptr<FynHead>& person,
                                                         std::list<std::shared_ptr<FynHead>>& pool,
                                                         bool useTrigger, std::uint32_t camId);

/**
 * The candidates that join `person`, in their order and without `person`. Each must be a neighbour of the
 * member that the growing hash set of members visits last; the others do not count. Who is in `taken` does
 * not join, who joins is added to it.
 */
std::vector<std::shared_ptr<FynHead>> getProximityHeads(
    const std::shared_ptr<FynHead>& person, const std::vector<std::shared_ptr<FynHead>>& candidates,
    std::unordered_set<std::shared_ptr<FynHead>>& taken, bool useTrigger, std::uint32_t camId);

/**
 * Whether the first person of the frame still has as many persons around it, itself included, as the frame
 * has head ids. False, with a log line, when no person of the frame is known.
 */
bool isProximityMaintained(const Frame& frame, const PeopleMap& persons);

}  // namespace fyn::productionrules
