#include "layouts/people/PeopleInputFaults.h"

#include <algorithm>
#include <utility>

#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr std::int32_t kEverybody = -1;

}  // namespace

void PeopleInputFaults::report(const MLData& data, const HeadsInView& heads, const char* tag) {
  Faults faults;
  addRepeatedIds(data, faults);
  for (const std::shared_ptr<FynHead>& person : data.getHeads()) {
    if (heads.find(*person) == nullptr) {
      const bool isSeen = person->findHead(heads.camId()) != nullptr;
      faults.emplace(isSeen ? Kind::BadBox : Kind::NotSeen, person->id, heads.camId());
    }
  }
  replaceBy(std::move(faults), tag);
}

void PeopleInputFaults::reportAllCameras(const MLData& data, const char* tag) {
  Faults faults;
  addRepeatedIds(data, faults);
  for (const std::shared_ptr<FynHead>& person : data.getHeads()) {
    for (const std::uint32_t camId : person->feedPriorityList) {
      if (FynCamerasConfig::get().getCameraLensModelDimension(static_cast<int>(camId)) == Dimension{}) {
        faults.emplace(Kind::NoImage, kEverybody, camId);
      } else if (headsOfListedCamera(camId).find(*person) == nullptr) {
        faults.emplace(Kind::BadBox, person->id, camId);
      }
    }
  }
  replaceBy(std::move(faults), tag);
}

void PeopleInputFaults::addRepeatedIds(const MLData& data, Faults& faults) {
  mIds.clear();
  for (const std::shared_ptr<FynHead>& person : data.getHeads()) {
    mIds.push_back(person->id);
  }
  std::sort(mIds.begin(), mIds.end());
  for (auto twice = std::adjacent_find(mIds.begin(), mIds.end()); twice != mIds.end();
       twice = std::adjacent_find(twice + 1, mIds.end())) {
    faults.emplace(Kind::RepeatedId, *twice, FynHead::kNoCamera);
  }
}

void PeopleInputFaults::replaceBy(Faults faults, const char* tag) {
  for (const Fault& fault : faults) {
    if (mFaults.count(fault) == 0) {
      log(fault, tag);
    }
  }
  mFaults = std::move(faults);
}

void PeopleInputFaults::log(const Fault& fault, const char* tag) {
  const auto& [kind, person, camera] = fault;
  const int camId = static_cast<int>(camera);
  switch (kind) {
    case Kind::NotSeen:
      // No fault in a room of several cameras.
      PRB_LOGI(tag, "person %d is not seen by camera %d", person, camId);
      break;
    case Kind::BadBox:
      PRB_LOGW(tag, "person %d cannot be shown: the box in camera %d is empty or outside the image", person,
               camId);
      break;
    case Kind::RepeatedId:
      PRB_LOGW(tag, "two persons have the id %d: the first counts", person);
      break;
    case Kind::NoImage:
      PRB_LOGW(tag, "heads come from camera %d, which is not in the list of cameras: they are not shown",
               camId);
      break;
  }
}

}  // namespace fyn::productionrules
