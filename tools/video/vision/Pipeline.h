#pragma once

#include <memory>
#include <vector>

#include "tools/meeting/VisionResult.h"
#include "tools/video/source/FrameFeed.h"
#include "tools/video/vision/DetectionRunner.h"
#include "tools/video/vision/PersonTracker.h"
#include "tools/video/vision/SpeakerFinder.h"

namespace fyn::productionrules::video {

/** Frames of all cameras in, vision results out. */
class Pipeline {
 public:
  /** Looks at every frame whose number leaves 1 when divided by `every`; in the background when it `isLive`.
   */
  Pipeline(const std::vector<CameraInput>& inputs, std::unique_ptr<PersonDetector> detector, int every,
           bool isLive, WithoutSound withoutSound);

  const std::vector<MeetingCamera>& cameras() const { return mCameras; }

  VisionResult look(const FedFrame& frame);

 private:
  const RoomAxis mRoom;
  PersonTracker mTracker;
  SpeakerFinder mSpeakers;
  DetectionRunner mRunner;
  const int mEvery;
  const std::vector<MeetingCamera> mCameras;
};

}  // namespace fyn::productionrules::video
