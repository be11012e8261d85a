#include "layouts/people/HeadsInView.h"

#include <algorithm>
#include <tuple>

#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

using Person = std::shared_ptr<FynHead>;
using Ids = std::set<std::int64_t>;

bool isPartlyInside(const Rect& box, const Dimension& image) {
  return box.left < box.right && box.top < box.bottom && box.left < image.width && box.top < image.height &&
         box.right > 0 && box.bottom > 0;
}

bool isNear(std::int64_t low, std::int64_t high, std::int64_t size) {
  return low >= -size && high <= 2 * size;
}

bool isInside(const Rect& box, const Dimension& image) {
  return box.left >= 0 && box.top >= 0 && box.right <= image.width && box.bottom <= image.height;
}

}  // namespace

HeadsInView::HeadsInView(std::uint32_t camId, const Dimension& image, HeadRule rule)
    : mCamId(camId), mImage(image), mRule(rule) {}

bool HeadsInView::isUsable(const Rect& box) const {
  return isPartlyInside(box, mImage) &&
         (mRule == HeadRule::PartlyInImage || isInside(box, mImage) ||
          (isNear(box.left, box.right, mImage.width) && isNear(box.top, box.bottom, mImage.height)));
}

const Head* HeadsInView::find(const FynHead& person) const {
  const Head* const head = person.findHead(mCamId);
  return head != nullptr && isUsable(head->bbox) ? head : nullptr;
}

const Head* HeadsInView::find(const PeopleMap& people, std::int64_t personId) const {
  const auto person = people.find(personId);
  return person != people.end() ? find(*person->second) : nullptr;
}

bool HeadsInView::isEverybodyOnce(const std::vector<Person>& persons) {
  // Most results name their people by number.
  if (std::adjacent_find(persons.begin(), persons.end(),
                         [](const Person& a, const Person& b) { return a->id >= b->id; }) == persons.end()) {
    return true;
  }
  std::vector<std::int32_t> ids;
  ids.reserve(persons.size());
  for (const Person& person : persons) {
    ids.push_back(person->id);
  }
  std::sort(ids.begin(), ids.end());
  return std::adjacent_find(ids.begin(), ids.end()) == ids.end();
}

void HeadsInView::sort(std::vector<Person>& inView) const {
  const auto place = [this](const Person& person) {
    const Rect& box = person->findHead(mCamId)->bbox;
    return std::make_tuple(box.left, box.top, person->id);
  };
  std::sort(inView.begin(), inView.end(),
            [&](const Person& a, const Person& b) { return place(a) < place(b); });
}

std::vector<Rect> HeadsInView::bounds(const PeopleMap& people, const Ids& ids) const {
  std::vector<Rect> bounds;
  bounds.reserve(ids.size());
  for (const std::int64_t id : ids) {
    if (const Head* const head = find(people, id)) {
      bounds.push_back(head->bbox);
    }
  }
  return bounds;
}

bool HeadsInView::holdsAll(const PeopleMap& people, const Ids& ids) const {
  return std::all_of(ids.begin(), ids.end(), [&](std::int64_t id) { return find(people, id) != nullptr; });
}

bool HeadsInView::isWhole(const Rect& box, const Rect& view) const {
  return view.left <= std::max(box.left, 0) && view.top <= std::max(box.top, 0) &&
         view.right >= std::min(box.right, mImage.width) &&
         view.bottom >= std::min(box.bottom, mImage.height);
}

bool HeadsInView::areWhole(const PeopleMap& people, const Ids& ids, const Rect& view) const {
  return std::all_of(ids.begin(), ids.end(), [&](std::int64_t id) {
    const Head* const head = find(people, id);
    return head != nullptr && isWhole(head->bbox, view);
  });
}

HeadsInView headsForTiles(std::uint32_t camId) {
  return {camId, getCameraLensModelDimension(static_cast<int>(camId)), HeadRule::PartlyInImage};
}

HeadsInView headsOfListedCamera(std::uint32_t camId) {
  return {camId, FynCamerasConfig::get().getCameraLensModelDimension(static_cast<int>(camId)),
          HeadRule::PartlyInImage};
}

HeadsInView headsToFollow(std::uint32_t camId) {
  return {camId, getCameraLensModelDimension(static_cast<int>(camId)), HeadRule::NearImage};
}

}  // namespace fyn::productionrules
