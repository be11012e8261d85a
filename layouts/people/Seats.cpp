#include "layouts/people/Seats.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "layouts/people/PeopleTiles.h"

namespace fyn::productionrules {

namespace {

const Head& headOf(const Seat& seat) {
  return *seat.person->findHead(seat.camId);
}

// The seats of `ownCamId` first, then by camera, in each from left to right.
void sortSeats(std::vector<Seat>& seats, std::int32_t ownCamId) {
  const auto isBefore = [ownCamId](const Seat& a, const Seat& b) {
    const Head& headA = headOf(a);
    const Head& headB = headOf(b);
    if (headA.camId != headB.camId) {
      return headA.camId == ownCamId || (headB.camId != ownCamId && headA.camId < headB.camId);
    }
    return headA.bbox.left != headB.bbox.left ? headA.bbox.left < headB.bbox.left
                                              : headA.bbox.top > headB.bbox.top;
  };
  // Most results name their people in this order.
  if (!std::is_sorted(seats.begin(), seats.end(), isBefore)) {
    std::stable_sort(seats.begin(), seats.end(), isBefore);
  }
}

bool shows(std::uint32_t camId, const FynHead& person) {
  return headsOfListedCamera(camId).find(person) != nullptr;
}

bool seesSomebody(const MLData& data, std::int32_t camId) {
  const std::vector<std::shared_ptr<FynHead>>& persons = data.getHeads();
  return std::any_of(persons.begin(), persons.end(), [&](const std::shared_ptr<FynHead>& person) {
    return shows(static_cast<std::uint32_t>(camId), *person);
  });
}

}  // namespace

std::vector<Seat> findSeats(const MLData& data, const HeadsInView& heads) {
  std::vector<Seat> seats;
  seats.reserve(data.getHeads().size());
  heads.visit(data.getHeads(), [&](const std::shared_ptr<FynHead>& person) {
    seats.push_back({person, heads.camId()});
  });
  sortSeats(seats, static_cast<std::int32_t>(heads.camId()));
  return seats;
}

std::optional<std::uint32_t> findBestCamera(const FynHead& person) {
  const auto best = std::find_if(person.feedPriorityList.begin(), person.feedPriorityList.end(),
                                 [&](std::uint32_t camId) { return shows(camId, person); });
  return best != person.feedPriorityList.end() ? std::optional(*best) : std::nullopt;
}

std::optional<std::uint32_t> cameraOfTile(const Layout* layout, const FynHead& person) {
  if (layout == nullptr || !hasTiles(*layout)) {
    return std::nullopt;
  }
  const auto frame = std::find_if(layout->frames.begin(), layout->frames.end(),
                                  [&](const Frame& each) { return each.fynHeads.count(person.id) != 0; });
  return frame != layout->frames.end() ? std::optional(frame->fynCamId) : std::nullopt;
}

std::vector<Seat> chooseSeats(const MLData& data, const Layout* current, const Layout* pending,
                              std::int32_t ownCamId) {
  std::vector<Seat> seats;
  std::unordered_set<std::int32_t> known;
  for (const std::shared_ptr<FynHead>& person : data.getHeads()) {
    if (!known.insert(person->id).second) {
      continue;
    }
    std::optional<std::uint32_t> camId;
    for (const Layout* const layout : {current, pending}) {
      const std::optional<std::uint32_t> tile = camId ? std::nullopt : cameraOfTile(layout, *person);
      if (tile && shows(*tile, *person)) {
        camId = tile;
      }
    }
    if (!camId) {
      camId = findBestCamera(*person);
    }
    if (camId) {
      seats.push_back({person, *camId});
    }
  }
  sortSeats(seats, ownCamId);
  return seats;
}

std::uint32_t findGroupCamera(const MLData& data, const std::vector<Seat>& seats, std::int32_t frontCamId,
                              std::int32_t ownCamId) {
  for (const std::int32_t camId : {frontCamId, ownCamId}) {
    if (seesSomebody(data, camId)) {
      return static_cast<std::uint32_t>(camId);
    }
  }
  std::map<std::uint32_t, int> seatsOfCamera;
  for (const Seat& seat : seats) {
    ++seatsOfCamera[seat.camId];
  }
  const auto most = std::max_element(seatsOfCamera.begin(), seatsOfCamera.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  return most != seatsOfCamera.end() ? most->first : static_cast<std::uint32_t>(ownCamId);
}

std::uint32_t findFullestCamera(const PeopleMap& people, std::uint32_t camId) {
  std::map<std::uint32_t, std::size_t> shown;
  std::size_t all = 0;
  for (const auto& [id, person] : people) {
    bool isShown = false;
    for (const auto& [each, head] : person->mCamIdAssocHeadMap) {
      if (shows(each, *person)) {
        ++shown[each];
        isShown = true;
      }
    }
    all += isShown ? 1 : 0;
  }
  const auto most = std::max_element(shown.begin(), shown.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  if (most == shown.end()) {
    return camId;
  }
  const std::size_t more = most->second == all ? 1 : 2;
  return most->second >= shown[camId] + more ? most->first : camId;
}

}  // namespace fyn::productionrules
