#include "model/Head.h"

#include <cmath>

#include "model/Arithmetic.h"
#include "model/FynCamerasConfig.h"
#include "model/HeadKeys.h"
#include "model/JsonMembers.h"
#include "model/JsonNumber.h"

namespace fyn::productionrules {

namespace {

// Image quality, in per cent: below the first a head is too small to rank well; up to the second it ranks one
// worse.
constexpr float kLowQuality = 4.0F;
constexpr float kMiddleQuality = 6.5F;

void readIds(const nlohmann::json* list, std::vector<std::int32_t>& ids) {
  if (list == nullptr) {
    return;
  }
  if (!list->is_array()) {
    // Raises the library's own error for the wrong kind.
    ids = list->get<std::vector<std::int32_t>>();
    return;
  }
  std::vector<std::int32_t> read;
  read.reserve(list->size());
  for (const nlohmann::json& id : *list) {
    read.push_back(fields::toInt32(id));
  }
  ids = std::move(read);
}

std::string idsText(const std::vector<std::int32_t>& ids) {
  std::string text = "[";
  for (const std::int32_t id : ids) {
    if (text.size() > 1) {
      text += ',';
    }
    text += std::to_string(id);
  }
  return text + ']';
}

std::string sidesText(const Rect& rect) {
  return idsText({rect.left, rect.top, rect.right, rect.bottom});
}

}  // namespace

void Head::from_json(const nlohmann::json& document) {
  const auto members = fields::findMembers(document, kHeadKeys);
  // The order of reading decides which of several faults is reported.
  if (const auto* const value = members[kId]) {
    id = fields::toInt64(*value);
  }
  if (const auto* const value = members[kYaw]) {
    yaw = value->get<float>();
  }
  if (const auto* const value = members[kPitch]) {
    pitch = fields::toInt32(*value);
  }
  if (const auto* const value = members[kScore]) {
    score = value->get<double>();
  }
  if (const auto* const value = members[kIsSpeaker]) {
    isSpeaker = value->get<bool>();
  }
  readIds(members[kSubsetSpeakers], subsetSpeakers);
  readIds(members[kProximityGroup], proximityGroup);
  readIds(members[kExplicitGroup], explicitGroup);
  readIds(members[kExtendedGroup], extendedGroup);
  if (const auto* const value = members[kSsb]) {
    fyn::from_json(*value, ssb);
  }
  if (const auto* const value = members[kBbox]) {
    fyn::from_json(*value, bbox);
  }
  if (const auto* const value = members[kCamId]) {
    camId = fields::toInt32(*value);
  }
  // Only heads without a camera of the system's own numbering bring their rank along.
  if (const auto* const value = members[kFynCamId]) {
    fynCamId = fields::toInt32(*value);
  } else if (const auto* const rank = members[kQfactor]) {
    qfactor = fields::toUint32(*rank);
  }
}

bool Head::equals(const Head& other) const {
  return id == other.id && isSpeaker == other.isSpeaker && bbox == other.bbox;
}

std::string Head::str() const {
  return R"({"camId":)" + std::to_string(camId) + R"(,"fynCamId":)" + std::to_string(fynCamId) +
         R"(,"isSpeaker":)" + (isSpeaker ? "true" : "false") + R"(,"proximityGroup":)" +
         idsText(proximityGroup) + R"(,"ssb":)" + sidesText(ssb) + R"(,"headBox":)" + sidesText(bbox) + "}";
}

void Head::calculatImageQuality() {
  const auto imageHeight =
      static_cast<float>(FynCamerasConfig::get().getCameraLensModelDimension(fynCamId).height);
  imageQuality = static_cast<float>(wrapSub(bbox.bottom, bbox.top)) / imageHeight * 100.0F;
}

void Head::calculateQfactor() {
  if (std::isnan(yaw)) {
    qfactor = 0;
    return;
  }
  const bool isLow = imageQuality < kLowQuality;
  if (yaw < 50.0F) {
    qfactor = isLow ? 5 : 1;
  } else if (yaw <= 100.0F) {
    qfactor = isLow ? 6 : 3;
  } else {
    qfactor = isLow ? 9 : 7;
  }
  if (imageQuality >= kLowQuality && imageQuality <= kMiddleQuality) {
    ++qfactor;
  }
}

void from_json(const nlohmann::json& document, std::shared_ptr<Head>& head) {
  head = std::make_shared<Head>();
  head->from_json(document);
}

}  // namespace fyn::productionrules
