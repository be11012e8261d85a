#include "tools/video/vision/VisionPublisher.h"

namespace fyn::productionrules::video {

namespace {

// A service that starts later learns the cameras from this.
constexpr std::int64_t kCamerasAgainMs = 5000;

}  // namespace

VisionPublisher::VisionPublisher(Pipeline& pipeline, const PlatformOptions& platform, StopSignals& stop)
    : mPipeline(pipeline), mBus(platform) {
  mBus.waitUntilReady(stop);
}

void VisionPublisher::publish(const FedFrame& frame) {
  if (frame.ms >= mCamerasDue) {
    mCamerasDue = frame.ms + kCamerasAgainMs;
    for (const BusMessage& message : cameraMessages(mPipeline.cameras())) {
      mBus.client().publish(message.topic, message.payload);
    }
  }
  const BusMessage message = visionMessage(mPipeline.look(frame), mPipeline.cameras());
  mBus.client().publish(message.topic, message.payload);
}

}  // namespace fyn::productionrules::video
