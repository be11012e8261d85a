#include "tools/video/vision/Pipeline.h"

#include <utility>

#include "tools/video/vision/SeenPersons.h"

namespace fyn::productionrules::video {

Pipeline::Pipeline(const std::vector<CameraInput>& inputs, std::unique_ptr<PersonDetector> detector,
                   int every, bool isLive, WithoutSound withoutSound)
    : mRoom(inputs),
      mTracker(mRoom),
      mSpeakers(withoutSound),
      mRunner(std::move(detector), isLive),
      mEvery(every),
      mCameras(inputs.size(), {kDefaultImageSize}) {}

VisionResult Pipeline::look(const FedFrame& frame) {
  if ((frame.number - 1) % mEvery == 0 && mRunner.isIdle()) {
    mRunner.begin(frame.pictures, frame.number, frame.ms);
  }
  if (const std::optional<DetectedFrame> found = mRunner.take()) {
    mTracker.update(mRoom.merge(found->heads), found->ms);
  }
  std::vector<TrackedPerson> persons = mTracker.at(frame.ms);
  mSpeakers.mark(persons, frame.speech, frame.ms);
  return {frame.ms, frame.number, seenPersons(persons)};
}

}  // namespace fyn::productionrules::video
