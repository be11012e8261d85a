#include "geometry/PeopleInFrame.h"

#include <algorithm>

#include "geometry/FramePredicates.h"
#include "geometry/HeadBuffer.h"
#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "FramingUtil";

using Person = std::shared_ptr<FynHead>;

template <typename Persons>
std::set<std::int64_t> personIds(const Persons& persons) {
  std::set<std::int64_t> ids;
  for (const Person& person : persons) {
    ids.insert(person->id);
  }
  return ids;
}

}  // namespace

bool isAdditionalHeadsPresentInFrame(const Rect& frame, const std::shared_ptr<MLData>& mlData,
                                     const std::vector<Person>& framed, std::uint32_t camId) {
  const std::vector<Person>& persons = mlData->getHeads();
  return std::any_of(persons.begin(), persons.end(), [&](const Person& person) {
    const Head* const head = person->findHead(camId);
    return head != nullptr && isInside(frame, head->bbox) &&
           std::find(framed.begin(), framed.end(), person) == framed.end();
  });
}

bool isSpeakerFramedAlready(const Person& speaker, const std::shared_ptr<Layout>& layout,
                            std::uint32_t camId) {
  const Head* const head = speaker->findHead(camId);
  if (head == nullptr || layout->frames.empty()) {
    return false;
  }
  const Dimension image = getCameraLensModelDimension(static_cast<int>(camId));
  return isInside(layout->frames.front().source, getHeadBufferRect(head->bbox, image));
}

std::vector<Person> getActiveSpeakers(const std::shared_ptr<MLData>& mlData, std::uint32_t camId) {
  std::vector<Person> speakers;
  for (const Person& person : mlData->getHeads()) {
    const Head* const head = person->findHead(camId);
    if (head != nullptr && head->isSpeaker) {
      speakers.push_back(person);
      PRB_LOGD(kTag, "%s: IsActiveSpeaker(%d) ", __func__, static_cast<int>(head->isSpeaker));
    }
  }
  return speakers;
}

std::set<std::int64_t> convertSetVisionFaceToSetIds(const std::vector<Person>& persons, std::uint32_t camId) {
  std::set<std::int64_t> ids;
  for (const Person& person : persons) {
    const std::shared_ptr<Head> head = person->getHead(camId);
    if (head == nullptr) {
      PRB_LOGE(kTag, "%s head (fynID: %d) not found for camId: %d", __func__, person->id,
               static_cast<int>(camId));
      continue;
    }
    ids.insert(head->id);
  }
  return ids;
}

std::set<std::int64_t> convertSetVisionFaceToSetIds(const std::set<Person>& persons, std::uint32_t camId) {
  std::vector<Person> byId(persons.begin(), persons.end());
  std::sort(byId.begin(), byId.end(), [](const Person& a, const Person& b) { return a->id < b->id; });
  return convertSetVisionFaceToSetIds(byId, camId);
}

std::set<std::int64_t> convertSetVisionFaceToSetFynIds(const std::vector<Person>& persons) {
  return personIds(persons);
}

std::set<std::int64_t> convertSetVisionFaceToSetFynIds(const std::set<Person>& persons) {
  return personIds(persons);
}

}  // namespace fyn::productionrules
