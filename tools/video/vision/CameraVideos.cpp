#include "tools/video/vision/CameraVideos.h"

#include <cmath>

namespace fyn::productionrules::video {

CameraVideos::CameraVideos(const std::vector<CameraInput>& inputs, const std::string& sound)
    : mSound(sound, inputs) {
  for (const CameraInput& camera : inputs) {
    mVideos.push_back(std::make_unique<VideoInput>(camera.input));
  }
  mPictures.resize(mVideos.size());
}

std::int64_t CameraVideos::timeOf(std::int64_t number) const {
  return std::llround(static_cast<double>(number - 1) * 1000.0 / mVideos.front()->rate());
}

bool CameraVideos::next() {
  for (std::size_t camera = 0; camera < mVideos.size(); ++camera) {
    if (!mVideos[camera]->next(mPictures[camera])) {
      return false;
    }
  }
  ++mNumber;
  return true;
}

}  // namespace fyn::productionrules::video
