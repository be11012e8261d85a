#include "tools/video/vision/DetectionRunner.h"

#include <utility>

namespace fyn::productionrules::video {

DetectionRunner::DetectionRunner(std::unique_ptr<PersonDetector> detector, bool inBackground)
    : mDetector(std::move(detector)) {
  if (inBackground) {
    mThread = std::thread([this] { lookInBackground(); });
  }
}

DetectionRunner::~DetectionRunner() {
  {
    const MutexLock lock(mMutex);
    mEnding = true;
  }
  mChanged.notifyAll();
  if (mThread.joinable()) {
    mThread.join();
  }
}

void DetectionRunner::begin(const std::vector<cv::Mat>& pictures, std::int64_t frame, std::int64_t ms) {
  std::vector<cv::Mat> own;
  own.reserve(pictures.size());
  for (const cv::Mat& picture : pictures) {
    // The reader fills its picture again while the detector looks at this one.
    own.push_back(mThread.joinable() ? picture.clone() : picture);
  }
  Look look([this, frame, ms, own = std::move(own)] {
    DetectedFrame found{ms, {}};
    for (std::size_t camera = 0; camera < own.size(); ++camera) {
      found.heads.push_back(mDetector->detect(own[camera], camera, frame));
    }
    return found;
  });
  mRunning = look.get_future();
  if (!mThread.joinable()) {
    look();
    return;
  }
  const MutexLock lock(mMutex);
  mNext = std::move(look);
  mChanged.notifyAll();
}

std::optional<DetectedFrame> DetectionRunner::take() {
  if (!mRunning.valid() || mRunning.wait_for(std::chrono::seconds(0)) == std::future_status::timeout) {
    return std::nullopt;
  }
  return mRunning.get();
}

void DetectionRunner::lookInBackground() {
  MutexLock lock(mMutex);
  while (!mEnding) {
    mChanged.waitFor(lock, std::chrono::hours(1),
                     [this]() PR_REQUIRES(mMutex) { return mEnding || mNext.valid(); });
    if (Look look = std::exchange(mNext, Look()); look.valid()) {
      lock.unlock();
      look();
      lock.lock();
    }
  }
}

}  // namespace fyn::productionrules::video
