#include "tools/feed/FeedCameras.h"

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "model/FynCamInfo.h"
#include "platform/PubSub.h"
#include "platform/Topics.h"

namespace fyn::productionrules {

std::string FeedCameras::schemaOf(const std::string& topic) {
  if (com::quil::pubsub::topicCovers(topics::kCameraParametersHead, topic)) {
    return "camera-parameters.json";
  }
  return topic == topics::kCamera ? "camera.json" : topic == topics::kCameras ? "cameras.json" : "";
}

void FeedCameras::take(const std::string& topic, const nlohmann::json& document) {
  if (topic == topics::kCamera) {
    mOwn = document.at("fynCamId").get<std::int32_t>();
    mTold.insert(mOwn);
  } else if (topic == topics::kCameras) {
    FynCameras cameras;
    cameras.from_json(document);
    for (const FynCamInfo& camera : cameras) {
      if (camera.isAttached) {
        mTold.insert(camera.ids.fynCamId);
        if (!camera.ids.cameraLensModel.empty()) {
          mSizes.emplace(camera.ids.fynCamId, camera.ids.lensModelDimension);
        }
      }
    }
  } else {
    const std::size_t length = topics::kCameraParametersHead.size();
    const std::int32_t camera =
        topic.size() > length + 1
            ? static_cast<std::int32_t>(std::strtol(topic.c_str() + length + 1, nullptr, 10))
            : mOwn;
    const std::int32_t period = document.value("horizontalPeriod", 0);
    mSizes[camera] = {period != 0 ? period : document.at("imageWidth").get<std::int32_t>(),
                      document.at("imageHeight").get<std::int32_t>()};
  }
}

Dimension FeedCameras::imageSize(std::int32_t camera) const {
  const auto told = mSizes.find(camera);
  return told != mSizes.end() ? told->second : kDefaultImageSize;
}

}  // namespace fyn::productionrules
