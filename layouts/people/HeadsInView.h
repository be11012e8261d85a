#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "geometry/PeopleMap.h"
#include "model/FynHead.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/** Of which heads an engine makes pictures. Every rule asks for a box with an area, a part of it in the
 * image. */
enum class HeadRule {
  /** Nothing else: a tile shows what there is. */
  PartlyInImage,
  /** No side further outside than the image is large: a picture follows such a head. */
  NearImage,
};

/** Who can be shown by one camera: of whom it has a head that a picture can be made of. */
class HeadsInView {
 public:
  /** `image` is the size of the camera's image, in pixels. */
  HeadsInView(std::uint32_t camId, const Dimension& image, HeadRule rule);

  std::uint32_t camId() const { return mCamId; }
  const Dimension& image() const { return mImage; }

  /** Whether a picture can be made of a head with that box. */
  bool isUsable(const Rect& box) const;

  /** The person's head in the camera; null when no picture can be made of it. */
  const Head* find(const FynHead& person) const;

  /** The same of somebody who is among `people`; null for anybody else. */
  const Head* find(const PeopleMap& people, std::int64_t personId) const;

  /** Sorts people in view from left to right, then top to bottom, then by id. */
  void sort(std::vector<std::shared_ptr<FynHead>>& inView) const;

  /** The boxes of those of `ids` who are in view, in camera pixels, by ascending id. */
  std::vector<Rect> bounds(const PeopleMap& people, const std::set<std::int64_t>& ids) const;

  /** Calls `take` with those in view, in their order. A second entry of a person must not stand in for a
   * first one that cannot be shown. */
  template <typename Take>
  void visit(const std::vector<std::shared_ptr<FynHead>>& persons, Take take) const {
    const bool isEachOnce = isEverybodyOnce(persons);
    std::set<std::int32_t> known;
    for (const std::shared_ptr<FynHead>& person : persons) {
      if ((isEachOnce || known.insert(person->id).second) && find(*person) != nullptr) {
        take(person);
      }
    }
  }

  /** Whether all of `ids` are in view. */
  bool holdsAll(const PeopleMap& people, const std::set<std::int64_t>& ids) const;

  /** Whether a head with that box lies inside `view`, as far as it lies in the image. */
  bool isWhole(const Rect& box, const Rect& view) const;

  /** Whether all of `ids` are in view, with their heads inside `view` as far as these lie in the image. */
  bool areWhole(const PeopleMap& people, const std::set<std::int64_t>& ids, const Rect& view) const;

 private:
  static bool isEverybodyOnce(const std::vector<std::shared_ptr<FynHead>>& persons);

  std::uint32_t mCamId;
  Dimension mImage;
  HeadRule mRule;
};

/** Whom an engine of one camera gives a tile. A camera that is not in the list counts as 1280 x 720 pixels.
 */
HeadsInView headsForTiles(std::uint32_t camId);

/** Whom an engine of all cameras shows by this one; nobody by one that is not in the list: it has no image.
 */
HeadsInView headsOfListedCamera(std::uint32_t camId);

/** Whom the picture of the speakers follows; a camera that is not in the list as for tiles. */
HeadsInView headsToFollow(std::uint32_t camId);

}  // namespace fyn::productionrules
