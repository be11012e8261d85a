#include "model/FynCamerasConfig.h"

#include <algorithm>

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

void FynCamerasConfig::update(const FynCameras& cameras) {
  fynCamInfoMap.clear();
  for (const FynCamInfo& camera : cameras) {
    if (camera.isAttached) {
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
