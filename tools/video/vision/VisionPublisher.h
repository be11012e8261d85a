#pragma once

#include <cstdint>

#include "tools/base/StopSignals.h"
#include "tools/live/LiveBus.h"
#include "tools/video/vision/Pipeline.h"

namespace fyn::productionrules::video {

/** Puts on the bus what the pipeline sees, and every few seconds of which cameras. */
class VisionPublisher {
 public:
  /** Waits for the bus; raises std::runtime_error when it does not answer. */
  VisionPublisher(Pipeline& pipeline, const PlatformOptions& platform, StopSignals& stop);

  void publish(const FedFrame& frame);

 private:
  Pipeline& mPipeline;
  LiveBus mBus;
  std::int64_t mCamerasDue = 0;
};

}  // namespace fyn::productionrules::video
