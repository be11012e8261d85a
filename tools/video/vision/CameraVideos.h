#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/video/source/FrameFeed.h"
#include "tools/video/source/SoundInput.h"
#include "tools/video/source/VideoInput.h"

namespace fyn::productionrules::video {

/** Videos of which each is one camera, frame by frame, with their sound. */
class CameraVideos {
 public:
  /** Raises UsageError when one cannot be opened. */
  CameraVideos(const std::vector<CameraInput>& inputs, const std::string& sound);

  bool isFromDevice() const { return mVideos.front()->isLive(); }

  /** When frame `number` of a file was taken, in milliseconds from its first. */
  std::int64_t timeOf(std::int64_t number) const;

  /** False at the end of the first video that ends. */
  bool next();

  /** The frame read last, as taken at `ms`. */
  FedFrame frame(std::int64_t ms) { return {mNumber, ms, mPictures, mSound.speechAt(timeOf(mNumber))}; }
  std::int64_t number() const { return mNumber; }

 private:
  std::vector<std::unique_ptr<VideoInput>> mVideos;
  std::vector<cv::Mat> mPictures;
  SoundInput mSound;
  std::int64_t mNumber = 0;
};

}  // namespace fyn::productionrules::video
