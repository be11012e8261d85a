#include "layouts/people/PeoplePresence.h"

namespace fyn::productionrules {

std::shared_ptr<MLData> PeoplePresence::steady(const MLData& data, std::uint32_t now, std::uint32_t holdMs) {
  ++mResults;
  auto result = std::make_shared<MLData>(data);
  result->heads.clear();
  for (const std::shared_ptr<FynHead>& person : data.getHeads()) {
    note(person, now, holdMs);
    if (mSightings[person->id].counts) {
      result->heads.push_back(person);
    }
  }
  for (auto each = mSightings.begin(); each != mSightings.end();) {
    const Sighting& sighting = each->second;
    if (now - sighting.latest > holdMs) {
      each = mSightings.erase(each);
      continue;
    }
    if (sighting.counts && sighting.result != mResults) {
      result->heads.push_back(sighting.person);
    }
    ++each;
  }
  return result;
}

void PeoplePresence::forget() {
  mSightings.clear();
  mResults = 0;
}

void PeoplePresence::note(const std::shared_ptr<FynHead>& person, std::uint32_t now, std::uint32_t holdMs) {
  Sighting& sighting =
      mSightings.try_emplace(person->id, Sighting{person, now, now, 0, mResults == 1}).first->second;
  // Of two with one id the first counts.
  if (sighting.result != mResults) {
    sighting.person = person;
    sighting.latest = now;
    sighting.result = mResults;
  }
  sighting.counts = sighting.counts || now - sighting.first >= holdMs;
}

}  // namespace fyn::productionrules
