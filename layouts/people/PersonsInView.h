#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "geometry/PeopleMap.h"
#include "model/Frame.h"
#include "model/FynHead.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/**
 * Whether a picture can be made of this box: it has an area, a part of it lies inside the image, and no side
 * is further outside than the image is large.
 */
bool isUsableBox(const Rect& box, const Dimension& image);

/**
 * The persons whose head camera `camId` sees with a usable box, left to right, then top to bottom, then by
 * id, so the order of a vision result does not matter. Of two persons with one id the first stays.
 */
std::vector<std::shared_ptr<FynHead>> personsInView(const std::vector<std::shared_ptr<FynHead>>& persons,
                                                    std::uint32_t camId);

/** The head of a person in the frame's camera; null when the person is not in view there. */
const Head* findHeadInView(const PeopleMap& people, std::int64_t personId, const Frame& frame);

/** The boxes of a frame's members who are in view, in camera pixels, by ascending id. */
std::vector<Rect> memberBounds(const PeopleMap& people, const Frame& frame);

}  // namespace fyn::productionrules
