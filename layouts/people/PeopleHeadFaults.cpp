#include "layouts/people/PeopleHeadFaults.h"

#include <iterator>

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/HeadsInView.h"

namespace fyn::productionrules {

bool PeopleHeadFaults::report(const Frame& frame, const PeopleMap& people) {
  // Who has left takes the fault along: the next one is another change.
  for (auto each = mReported.begin(); each != mReported.end();) {
    each = people.count(each->first) == 0 ? mReported.erase(each) : std::next(each);
  }
  for (const std::int64_t id : frame.fynHeads) {
    const auto person = people.find(id);
    if (person == people.end()) {
      return false;
    }
    const Head* const head = person->second->findHead(frame.fynCamId);
    const PersonInCamera key{id, frame.fynCamId};
    if (head == nullptr || isZeroRect(head->bbox)) {
      // The first such person is the one whom the report names.
      if (mReported.insert(key).second) {
        BaseLayout::reportMissingHead(frame, id, head);
      }
      return false;
    }
    mReported.erase(key);
  }
  return true;
}

bool PeopleHeadFaults::allowFraming(const Frame& frame, const PeopleMap& people, const Dimension& image) {
  const bool areInView =
      HeadsInView(frame.fynCamId, image, HeadRule::PartlyInImage).holdsAll(people, frame.fynHeads);
  return (areInView && mReported.empty()) || (report(frame, people) && areInView);
}

}  // namespace fyn::productionrules
