#include "model/FynHead.h"

#include <algorithm>

#include "model/FynCamerasConfig.h"
#include "model/JsonNumber.h"
#include "model/JsonText.h"
#include "model/OrderBy.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "";

// Whether `a` is the better view of the two.
bool isBetterView(const Head& a, const Head& b) {
  if (a.qfactor != b.qfactor) {
    return a.qfactor < b.qfactor;
  }
  if (a.yaw != b.yaw) {
    return a.yaw < b.yaw;
  }
  if (a.imageQuality != b.imageQuality) {
    return a.imageQuality > b.imageQuality;
  }
  return a.camId == FynCamerasConfig::get().forCamId;
}

}  // namespace

void FynHead::from_json(const nlohmann::json& document) {
  if (const auto* const value = fields::findMember(document, "fynId")) {
    id = fields::toInt32(*value);
  } else {
    PRB_LOGE(kTag, "%s **Received INVALID HEAD Head list %s", "from_json", fields::logText(document).c_str());
  }
  if (const auto* const list = fields::findMember(document, "associatedHeads")) {
    for (const nlohmann::json& element : *list) {
      std::shared_ptr<Head> head;
      productionrules::from_json(element, head);
      mCamIdAssocHeadMap.emplace(static_cast<std::uint32_t>(head->camId), std::move(head));
    }
  }
  updateFeedPriorityList();
}

void FynHead::updateFeedPriorityList() {
  feedPriorityList.reserve(feedPriorityList.size() + mCamIdAssocHeadMap.size());
  for (const auto& [camId, head] : mCamIdAssocHeadMap) {
    feedPriorityList.push_back(camId);
  }
  if (feedPriorityList.empty()) {
    PRB_LOGW(kTag, "FynHead::%s() Feed Priority List empty:  what whould we do this FynID: %d",
             "updateFeedPriorityList", id);
    return;
  }
  if (feedPriorityList.size() == 1) {
    return;
  }
  orderBy(feedPriorityList, [this](std::uint32_t a, std::uint32_t b) {
    const Head* const headA = findHead(a);
    const Head* const headB = findHead(b);
    return headA != nullptr && headB != nullptr && isBetterView(*headA, *headB);
  });
}

std::shared_ptr<Head> FynHead::getHead(std::uint32_t camId) const {
  if (mCamIdAssocHeadMap.empty()) {
    PRB_LOGW(kTag, "FynHead::%s() heads empty: CamId: %d FynID: %d", "getHead",
             static_cast<std::int32_t>(camId), id);
    return nullptr;
  }
  const auto entry = camId == kNoCamera ? mCamIdAssocHeadMap.begin() : mCamIdAssocHeadMap.find(camId);
  return entry != mCamIdAssocHeadMap.end() ? entry->second : nullptr;
}

void FynHead::setHead(const std::shared_ptr<Head>& head) {
  id = static_cast<std::int32_t>(head->id);
  mCamIdAssocHeadMap[static_cast<std::uint32_t>(head->camId)] = head;
}

std::uint32_t FynHead::getTopFeedPriorityCamID() const {
  if (feedPriorityList.empty()) {
    PRB_LOGE(kTag, "FynHead::%s() Feed Priority List empty!!!!! FynID: %d", "getTopFeedPriorityCamID", id);
    return kNoCamera;
  }
  return feedPriorityList.front();
}

std::shared_ptr<Head> FynHead::getTopFeedPriorityHead() const {
  const auto entry = mCamIdAssocHeadMap.find(getTopFeedPriorityCamID());
  if (entry != mCamIdAssocHeadMap.end() && entry->second != nullptr) {
    return entry->second;
  }
  PRB_LOGW(kTag, "FynHead::%s() top Feed Priority Head not found in mCamIdAssocHeadMap, FynID: %d",
           "getTopFeedPriorityHead", id);
  return nullptr;
}

bool FynHead::isFeedPriorityAvailable(int camId) const {
  return std::find(feedPriorityList.begin(), feedPriorityList.end(), static_cast<std::uint32_t>(camId)) !=
         feedPriorityList.end();
}

bool FynHead::hasTopFeedPriorityCameraChanged(std::uint32_t camId) const {
  return getTopFeedPriorityCamID() != camId;
}

}  // namespace fyn::productionrules
