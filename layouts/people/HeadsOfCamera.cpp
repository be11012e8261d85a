#include "layouts/people/HeadsOfCamera.h"

namespace fyn::productionrules {

const std::vector<HeadOfPerson>& HeadsOfCamera::of(const PeopleMap& people, unsigned peopleVersion,
                                                   std::uint32_t camId) {
  if (!mListed || mListed->peopleVersion != peopleVersion || mListed->camId != camId) {
    mListed = {peopleVersion, camId};
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
