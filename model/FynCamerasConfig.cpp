#include "model/FynCamerasConfig.h"

#include <algorithm>
#include <utility>

#include "platform/ServiceState.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "FynCamerasConfig";

// In every lens model name of a 360-degree camera.
constexpr const char* k360ModelCode = "R6";

}  // namespace

FynCamerasConfig::FynCamerasConfig() {
  PRB_LOGW(kTag, "FynCamerasConfig::ctor()");
}

const FynCamerasConfig& FynCamerasConfig::get() {
  return getMutable();
}

FynCamerasConfig& FynCamerasConfig::getMutable() {
  return ServiceState::current().part<FynCamerasConfig>();
}

bool FynCamerasConfig::hasRoom(std::size_t known) {
  if (known < kMostCameras) {
    return true;
  }
  if (!std::exchange(mIsFullSaid, true)) {
    PRB_LOGE(kTag, "%zu cameras are known, further ones are ignored", kMostCameras);
  }
  return false;
}

bool FynCamerasConfig::isKnownOrFits(std::int32_t camId) {
  return fynCamInfoMap.count(camId) != 0 || hasRoom(fynCamInfoMap.size());
}

void FynCamerasConfig::take(const FynCamInfo& camera) {
  if (isKnownOrFits(camera.ids.fynCamId)) {
    fynCamInfoMap[camera.ids.fynCamId] = camera;
  }
}

void FynCamerasConfig::update(const FynCameras& cameras) {
  fynCamInfoMap.clear();
  for (const FynCamInfo& camera : cameras) {
    if (camera.isAttached && isKnownOrFits(camera.ids.fynCamId)) {
      fynCamInfoMap.emplace(camera.ids.fynCamId, camera);
    }
  }
}

Dimension FynCamerasConfig::getCameraLensModelDimension(int camId) const {
  const auto camera = fynCamInfoMap.find(camId);
  if (camera != fynCamInfoMap.end()) {
    return camera->second.ids.lensModelDimension;
  }
  return camId == 0 || camId == -1 ? kDefaultImageSize : Dimension{};
}

void FynCamerasConfig::setCameraLensModelDimension(int camId, const Dimension& dimension) {
  if (!isKnownOrFits(camId)) {
    return;
  }
  fynCamInfoMap[camId].ids.lensModelDimension = dimension;
  PRB_LOGI(kTag, "setCamerLensModelDimension camId: %d, dimensions: {%d, %d}", camId, dimension.width,
           dimension.height);
}

bool FynCamerasConfig::isSecondary360Camera() const {
  return std::any_of(fynCamInfoMap.begin(), fynCamInfoMap.end(), [](const auto& camera) {
    return camera.second.ids.cameraLensModel.find(k360ModelCode) != std::string::npos;
  });
}

std::string FynCamerasConfig::str() const {
  std::string text = R"({"fynCamId":)" + std::to_string(fynCamId) + R"(,"forCamId":)" +
                     std::to_string(forCamId) + R"(,"fynCamInfoMap":{)";
  const char* separator = "\"";
  for (const auto& [id, camera] : fynCamInfoMap) {
    text += separator + std::to_string(id) + "\":" + camera.str();
    separator = ",\"";
  }
  return text + "}}";
}

Dimension getCameraLensModelDimension(int camId) {
  if (camId == -1) {
    return kDefaultImageSize;
  }
  const FynCamerasConfig& config = FynCamerasConfig::get();
  const auto camera = config.fynCamInfoMap.find(camId);
  return camera != config.fynCamInfoMap.end() ? camera->second.ids.lensModelDimension : kDefaultImageSize;
}

}  // namespace fyn::productionrules
