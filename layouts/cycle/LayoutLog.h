#pragma once

#include <memory>
#include <string>
#include <vector>

#include "geometry/PeopleMap.h"
#include "model/Layout.h"

/** What an engine writes into the log of its layouts, at information level. */
namespace fyn::productionrules {

/** The whole layout in one line that begins with `prefix`; a warning for null. */
void logLayout(const std::shared_ptr<Layout>& layout, const std::string& prefix, const PeopleMap& people);

/** The source of every frame. */
void logFrameViews(const std::vector<Frame>& frames);

/** The type of the layout and the box of everybody in it. */
void logFrameHeads(const Layout& layout, const PeopleMap& people);

}  // namespace fyn::productionrules
