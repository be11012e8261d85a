#include "layouts/people/PersonsInView.h"

#include <algorithm>
#include <tuple>

#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

using Person = std::shared_ptr<FynHead>;

void dropRepeatedIds(std::vector<Person>& persons) {
  std::stable_sort(persons.begin(), persons.end(),
                   [](const Person& a, const Person& b) { return a->id < b->id; });
  persons.erase(std::unique(persons.begin(), persons.end(),
                            [](const Person& a, const Person& b) { return a->id == b->id; }),
                persons.end());
}

}  // namespace

bool isUsableBox(const Rect& box, const Dimension& image) {
  const auto isUsable = [](std::int64_t low, std::int64_t high, std::int64_t size) {
    return low < high && low < size && high > 0 && low >= -size && high <= 2 * size;
  };
  return isUsable(box.left, box.right, image.width) && isUsable(box.top, box.bottom, image.height);
}

std::vector<Person> personsInView(const std::vector<Person>& persons, std::uint32_t camId) {
  const Dimension image = getCameraLensModelDimension(static_cast<int>(camId));
  // The repeated ids go first: a second entry must not stand in for a first one that cannot be shown.
  std::vector<Person> inView = persons;
  dropRepeatedIds(inView);
  inView.erase(std::remove_if(inView.begin(), inView.end(),
                              [&](const Person& person) {
                                const Head* const head = person->findHead(camId);
                                return head == nullptr || !isUsableBox(head->bbox, image);
                              }),
               inView.end());
  const auto place = [camId](const Person& person) {
    const Rect& box = person->findHead(camId)->bbox;
    return std::make_tuple(box.left, box.top, person->id);
  };
  std::sort(inView.begin(), inView.end(),
            [&](const Person& a, const Person& b) { return place(a) < place(b); });
  return inView;
}

const Head* findHeadInView(const PeopleMap& people, std::int64_t personId, const Frame& frame) {
  const auto person = people.find(personId);
  if (person == people.end()) {
    return nullptr;
  }
  const Head* const head = person->second->findHead(frame.fynCamId);
  const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
  return head != nullptr && isUsableBox(head->bbox, image) ? head : nullptr;
}

std::vector<Rect> memberBounds(const PeopleMap& people, const Frame& frame) {
  std::vector<Rect> bounds;
  bounds.reserve(frame.fynHeads.size());
  for (const std::int64_t id : frame.fynHeads) {
    if (const Head* const head = findHeadInView(people, id, frame)) {
      bounds.push_back(head->bbox);
    }
  }
  return bounds;
}

}  // namespace fyn::productionrules
