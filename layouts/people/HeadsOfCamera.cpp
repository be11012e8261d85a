#include "layouts/people/HeadsOfCamera.h"

namespace fyn::productionrules {

const std::vector<HeadOfPerson>& HeadsOfCamera::of(const PeopleMap& people, unsigned peopleVersion,
                                                   std::uint32_t camId) {
  if (const std::pair listed(peopleVersion, camId); mListed != listed) {
    mListed = listed;
    mHeads.clear();
    for (const auto& [id, person] : people) {
      if (const Head* const head = person->findHead(camId)) {
        mHeads.push_back({id, head->bbox});
      }
    }
  }
  return mHeads;
}

}  // namespace fyn::productionrules
