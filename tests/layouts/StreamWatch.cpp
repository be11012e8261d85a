#include "tests/layouts/StreamWatch.h"

#include <iterator>
#include <string>

namespace fyn::productionrules::testing {

namespace {

// A picture of everybody follows nobody.
bool followsSomebody(const Layout& layout) {
  return layout.streamId != 0 && layout.layoutType != FramingType::ROOM &&
         layout.layoutType != FramingType::GROUP;
}

}  // namespace

Faults StreamWatch::look(const BaseLayout& engine) {
  const PeopleMap& inView = engine.peopleMap();
  for (auto place = mStreamOf.begin(); place != mStreamOf.end();) {
    place = inView.count(place->first) == 0 ? mStreamOf.erase(place) : std::next(place);
  }
  Faults faults;
  std::map<std::int64_t, int> shownBy;
  for (const std::shared_ptr<Layout>& layout : engine.getFinalLayoutPtrs()) {
    if (!followsSomebody(*layout)) {
      continue;
    }
    for (const std::int64_t id : layout->frames.front().fynHeads) {
      if (!shownBy.emplace(id, layout->streamId).second) {
        faults.push_back(std::to_string(id) + " is in two streams");
      }
      if (inView.count(id) != 0 &&
          mStreamOf.emplace(id, layout->streamId).first->second != layout->streamId) {
        faults.push_back(std::to_string(id) + " has changed to stream " + std::to_string(layout->streamId));
      }
    }
  }
  return faults;
}

}  // namespace fyn::productionrules::testing
