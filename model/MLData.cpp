#include "model/MLData.h"

#include <algorithm>

#include "model/JsonNumber.h"
#include "model/JsonText.h"
#include "model/OrderBy.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "";

bool isSamePerson(const FynHead& a, const FynHead& b) {
  if (a.id != b.id || a.mCamIdAssocHeadMap.size() != b.mCamIdAssocHeadMap.size()) {
    return false;
  }
  return std::all_of(a.mCamIdAssocHeadMap.begin(), a.mCamIdAssocHeadMap.end(), [&b](const auto& entry) {
    const auto other = b.mCamIdAssocHeadMap.find(entry.first);
    return other != b.mCamIdAssocHeadMap.end() && entry.second->equals(*other->second);
  });
}

// The person's head in that camera, or else in any.
const Head* headNear(const FynHead& person, std::uint32_t camId) {
  const Head* const head = person.findHead(camId);
  return head != nullptr ? head : person.findHead(FynHead::kNoCamera);
}

// Whether `a` stands left of `b`; heads of other cameras come after those of `camId`.
bool standsBefore(const Head& a, const Head& b, std::int32_t camId) {
  if (a.camId == b.camId) {
    return a.bbox.left != b.bbox.left ? a.bbox.left < b.bbox.left : a.bbox.top > b.bbox.top;
  }
  return a.camId == camId || (a.camId < b.camId && b.camId != camId);
}

std::string personsText(const std::vector<std::shared_ptr<FynHead>>& persons) {
  std::string text = "[";
  for (const std::shared_ptr<FynHead>& person : persons) {
    text += (text.size() > 1 ? "," : "") + std::to_string(person->id);
  }
  return text + "]";
}

}  // namespace

void MLData::from_json(const nlohmann::json& document) {
  const auto* const time = fields::findMember(document, "timestamp");
  timestamp = time != nullptr ? fields::toInt64(*time) : 0;
  const auto* const number = fields::findMember(document, "frameNumber");
  frameNumber = number != nullptr ? fields::toInt64(*number) : 0;

  const nlohmann::json& persons = document.at("heads");
  heads.reserve(heads.size() + persons.size());
  for (const nlohmann::json& element : persons) {
    auto person = std::make_shared<FynHead>();
    person->from_json(element);
    if (person->getHead(FynHead::kNoCamera) == nullptr) {
      PRB_LOGE(kTag, "%s **Received EMPTY HEAD Head list %s", "from_json", fields::logText(element).c_str());
    } else if (person->id < 0) {
      PRB_LOGE(kTag, "%s **Received INVALID HEAD Head list %s", "from_json",
               fields::logText(element).c_str());
    } else {
      heads.push_back(std::move(person));
    }
  }
}

std::vector<std::shared_ptr<FynHead>> MLData::getSpeakers() const {
  std::vector<std::shared_ptr<FynHead>> speakers;
  for (const std::shared_ptr<FynHead>& person : heads) {
    const Head* const head = person->findHead(FynHead::kNoCamera);
    if (head != nullptr && head->isSpeaker) {
      speakers.push_back(person);
    }
  }
  return speakers;
}

void MLData::setHeads(const std::vector<std::shared_ptr<FynHead>>& newHeads) {
  heads = newHeads;
  PRB_LOGD(kTag, "%s FynHeads: %s", "setHeads", personsText(heads).c_str());
}

void MLData::sortFynHeads(int camId) {
  const auto camera = static_cast<std::uint32_t>(camId);
  orderBy(heads, [&](const std::shared_ptr<FynHead>& a, const std::shared_ptr<FynHead>& b) {
    const Head* const headA = headNear(*a, camera);
    const Head* const headB = headNear(*b, camera);
    if (headA == nullptr || headB == nullptr) {
      PRB_LOGW(kTag, "sortFynHeads(): head is null");
      return false;
    }
    return standsBefore(*headA, *headB, camId);
  });
}

bool MLData::equals(const MLData& other) const {
  return timestamp == other.timestamp && frameNumber == other.frameNumber &&
         std::equal(heads.begin(), heads.end(), other.heads.begin(), other.heads.end(),
                    [](const auto& a, const auto& b) { return isSamePerson(*a, *b); });
}

std::string MLData::str() const {
  return "timestamp: " + std::to_string(timestamp) + ", headcount:" + std::to_string(heads.size());
}

}  // namespace fyn::productionrules
