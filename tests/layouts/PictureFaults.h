#pragma once

#include <functional>
#include <string>
#include <vector>

#include "geometry/PeopleMap.h"
#include "model/Layout.h"

namespace fyn::productionrules::testing {

/** What a picture must never show; each fault is one line. An empty list is a good picture. */
using Faults = std::vector<std::string>;

/** Tiles that leave the output, overlap or do not cover it. */
Faults tilingFaults(const Layout& layout);

/** Views that are empty or leave the image of their camera; room views and blank frames aside. */
Faults viewFaults(const Layout& layout);

/** Persons who are shown in two frames. */
Faults doubleFaults(const Layout& layout);

/** Heads of the frame's persons that are cut, as far as they lie inside the image; unknown persons aside. */
Faults cutFaults(const Frame& frame, const PeopleMap& people);

/** Whether a head of the frame's persons is partly outside its camera's image; unknown persons aside. */
bool reachesOutOfTheImage(const Frame& frame, const PeopleMap& people);

}  // namespace fyn::productionrules::testing
