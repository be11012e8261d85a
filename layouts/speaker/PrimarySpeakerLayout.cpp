#include "layouts/speaker/PrimarySpeakerLayout.h"

#include <optional>

#include "config/PrConfig.h"
#include "layouts/people/Seats.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

const char* PrimarySpeakerLayout::getTag() const {
  return "PrimarySpeakerLayout";
}

void PrimarySpeakerLayout::addCamerasInUse(std::vector<HeadsInView>& cameras) const {
  SpeakerFramingLayout::addCamerasInUse(cameras);
  const FynCamerasConfig& config = FynCamerasConfig::get();
  for (const auto& [camId, info] : config.fynCamInfoMap) {
    if (camId != config.fynCamId) {
      cameras.push_back(headsToFollow(static_cast<std::uint32_t>(camId)));
    }
  }
}

std::uint32_t PrimarySpeakerLayout::chooseCamera(const MLData& data) {
  if (const std::optional<std::uint32_t> camera = cameraOfSpeaker()) {
    return *camera;
  }
  const std::int32_t ownCamId = FynCamerasConfig::get().fynCamId;
  return findGroupCamera(data, chooseSeats(data, nullptr, nullptr, ownCamId),
                         PrConfig::get().frontOfTheRoomCamId, ownCamId);
}

}  // namespace fyn::productionrules
