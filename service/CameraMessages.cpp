#include "service/CameraMessages.h"

#include <nlohmann/json.hpp>

#include "model/JsonNumber.h"
#include "platform/MrJsonUtil.h"
#include "platform/Topics.h"
#include "platform/VisionSettings.h"
#include "service/TopicText.h"

namespace fyn::productionrules {

using com::quil::pubsub::appendSubtopic;

namespace {
constexpr const char* kTag = "ProductionRulesIPCService";
}

void CameraMessages::handleCameraParametersMsg(const std::string& topic, const std::string& msg) {
  PRB_LOGI(kTag, "%s: CAMERA_PARAMS: %s %s", "handleCameraParametersMsg", topic.c_str(), msg.c_str());
  const std::vector<std::string> subTopics = getSubTopics(topic);
  if (subTopics.empty() || subTopics.front() != "head") {
    return;
  }
  const int camId = subTopics.size() > 1 ? std::stoi(subTopics.back()) : FynCamerasConfig::get().fynCamId;
  const nlohmann::json document = nlohmann::json::parse(msg);
  Dimension dimension{fields::toInt32(document.at("imageWidth")),
                      fields::toInt32(document.at("imageHeight"))};
  if (const auto* const period = fields::findMember(document, "horizontalPeriod")) {
    // The picture of a panorama camera repeats after this many pixels.
    if (const std::int32_t width = fields::toInt32(*period); width != 0) {
      dimension.width = width;
    }
  }
  FynCamerasConfig::getMutable().setCameraLensModelDimension(camId, dimension);
}

void CameraMessages::handleCamera(const std::string& msg) {
  PRB_LOGI(kTag, "%s: CAMERA: %s", "process", msg.c_str());
  const nlohmann::json document = nlohmann::json::parse(msg);
  int camId = 0;
  if (const auto* const id = fields::findMember(document, "fynCamId")) {
    camId = fields::toInt32(*id);
    takeOwnCamera(camId);
  } else {
    PRB_LOGE(kTag, "%s fynCamId not found in message: %s", "process", msg.c_str());
  }
  if (const auto* const type = fields::findMember(document, "cameraType")) {
    FynCamerasConfig::getMutable().cameraType = fields::toInt32(*type);
  }
  if (mModes.operatingMode() == FynOperatingMode::Secondary) {
    listenToPrimary(camId);
  }
}

// What the primary device sends to this camera.
void CameraMessages::listenToPrimary(int camId) {
  mBus.subscribe(std::string(topics::kTrackingMode), mListener);
  if (mHeardCameras.count(camId) != 0 || FynCamerasConfig::getMutable().hasRoom(mHeardCameras.size())) {
    mHeardCameras.insert(camId);
    mBus.subscribe(appendSubtopic(topics::kSecondaryScene, std::to_string(camId)), mListener);
  }
}

void CameraMessages::takeOwnCamera(int camId) {
  FynCamerasConfig& cameras = FynCamerasConfig::getMutable();
  cameras.fynCamId = camId;
  if (mModes.operatingMode() == FynOperatingMode::Standalone) {
    cameras.forCamId = camId;
    FynCamInfo own;
    own.isAttached = true;
    own.ids.fynCamId = camId;
    own.caps.hasIcd = true;
    own.caps.hasProductionRules = true;
    cameras.take(own);
    cameras.setCameraLensModelDimension(camId, kDefaultImageSize);
  }
  PRB_LOGI(kTag, "%s: camId: %d Setting FynCamerasConfig fynCamId: %d forCamId: %d", "process", camId,
           cameras.fynCamId, cameras.forCamId);
}

void CameraMessages::handleCameras(const std::string& msg) {
  PRB_LOGD(kTag, "%s: CAMERAS: %s", "process", msg.c_str());
  FynCamerasConfig::getMutable().update(getFynCamMessage(msg));
  PRB_LOGI(kTag, "%s: CAMERAS FynCamerasConfig: %s", "process", FynCamerasConfig::get().str().c_str());
  publishForwarding();
  becomePrimaryFor360Camera();
}

FynCameras CameraMessages::getFynCamMessage(const std::string& msg) const {
  FynCameras cameras;
  cameras.from_json(nlohmann::json::parse(msg));
  return cameras;
}

// Asks the remote-forwarding service to carry the framing mode and every other camera's layouts across
// devices.
void CameraMessages::publishForwarding() {
  nlohmann::ordered_json document;
  const auto forward = [&](const std::string& topic) {
    MrJsonUtil::addMrForwardMsg(document, topic, topic, false);
  };
  forward(std::string(topics::kTrackingMode));
  const FynCamerasConfig& cameras = FynCamerasConfig::get();
  for (const auto& [id, camera] : cameras.fynCamInfoMap) {
    if (id != cameras.fynCamId) {
      forward(appendSubtopic(topics::kSecondaryScene, std::to_string(id)));
    }
  }
  mBus.publish(std::string(topics::kForwardMessage), document.dump());
}

void CameraMessages::becomePrimaryFor360Camera() {
  const bool is360 = FynCamerasConfig::get().isSecondary360Camera();
  PRB_LOGD(kTag, "%s: CAMERAS is360 Camera: %d", "process", static_cast<int>(is360));
  if (mModes.operatingMode() != FynOperatingMode::Standalone || !is360) {
    return;
  }
  mModes.setFynOperatingMode(FynOperatingMode::Primary);
  PRB_LOGI(kTag, "%s: On Primary triggering %s trackingmode on secondary", "process",
           framingModeToString(mModes.framingMode()).c_str());
  mModes.publishFramingMode();
}

void CameraMessages::handleRemoteFynCameraMovedMsg(const std::string& msg) {
  const nlohmann::json document = nlohmann::json::parse(msg);
  // A missing id reads as null, which is no number: the base reports the error.
  const nlohmann::json absent;
  const auto* const found = fields::findMember(document, "fynCamId");
  const int camId = fields::toInt32(found != nullptr ? *found : absent);
  if (camId != FynCamerasConfig::get().fynCamId) {
    // Kept: only the line, no timer is touched.
    PRB_LOGI(kTag, "%s: Remote camera moved, changing layout timer to 0", "handleRemoteFynCameraMovedMsg");
  }
}

}  // namespace fyn::productionrules
