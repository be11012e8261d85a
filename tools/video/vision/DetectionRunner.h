#pragma once

#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "platform/Mutex.h"
#include "tools/video/vision/PersonDetector.h"

namespace fyn::productionrules::video {

/** What was detected in one frame of all cameras. */
struct DetectedFrame {
  /** When the frame was taken. */
  std::int64_t ms = 0;
  /** By camera. */
  std::vector<std::vector<Detection>> heads;
};

/**
 * Runs a detector that may take longer than a frame lasts: in the background one frame at a time, passing
 * over those that come meanwhile; or at once, so that the same video gives the same detections every time.
 */
class DetectionRunner {
 public:
  DetectionRunner(std::unique_ptr<PersonDetector> detector, bool inBackground);
  ~DetectionRunner();
  DetectionRunner(const DetectionRunner&) = delete;
  DetectionRunner& operator=(const DetectionRunner&) = delete;

  /** Whether the next frame would be looked at. */
  bool isIdle() const { return !mRunning.valid(); }

  /** Begins with a frame; the runner must be idle. */
  void begin(const std::vector<cv::Mat>& pictures, std::int64_t frame, std::int64_t ms);

  /** What was found, once it is; throws what the detector threw. */
  std::optional<DetectedFrame> take();

 private:
  using Look = std::packaged_task<DetectedFrame()>;
  void lookInBackground();

  std::unique_ptr<PersonDetector> mDetector;
  std::future<DetectedFrame> mRunning;
  Mutex mMutex;
  ConditionVariable mChanged;
  Look mNext PR_GUARDED_BY(mMutex);
  bool mEnding PR_GUARDED_BY(mMutex) = false;
  /** One for all frames: of each thread that ends the video library keeps a kilobyte. */
  std::thread mThread;
};

}  // namespace fyn::productionrules::video
