#pragma once

#include <chrono>
#include <functional>
#include <opencv2/core.hpp>
#include <string>
#include <thread>

#include "platform/Mutex.h"

namespace fyn::productionrules::video {

/**
 * Reads a device on a thread of its own, so that whoever shows its pictures waits for none that does not
 * come. A device that is gone is opened again.
 */
class DeviceCapture {
 public:
  /** Fills in the next picture; false when there are no more. */
  using Reader = std::function<bool(cv::Mat&)>;
  /** Opens the device; throws std::exception when that fails. */
  using Opener = std::function<Reader()>;

  struct Waits {
    /** How long the next picture may take before the one before it is shown again. */
    std::chrono::milliseconds next{100};
    /** How long that goes on. */
    std::chrono::milliseconds signal{1000};
    /** Between two attempts to open the device again. */
    std::chrono::milliseconds retry{500};
  };

  /** Throws what `open` throws the first time. */
  DeviceCapture(Opener open, const Waits& waits);
  ~DeviceCapture();
  DeviceCapture(const DeviceCapture&) = delete;
  DeviceCapture& operator=(const DeviceCapture&) = delete;

  /** The newest picture, one that was not given before if it comes in time; a picture that says so without a
   * signal. */
  cv::Mat next();

 private:
  void capture(Reader read);
  bool isEnding();

  const Opener mOpen;
  const Waits mWaits;
  Mutex mMutex;
  ConditionVariable mChanged;
  bool mEnding PR_GUARDED_BY(mMutex) = false;
  bool mIsNew PR_GUARDED_BY(mMutex) = false;
  cv::Mat mNewest PR_GUARDED_BY(mMutex);
  std::chrono::steady_clock::time_point mTaken PR_GUARDED_BY(mMutex) = std::chrono::steady_clock::now();
  std::thread mThread;
};

/** What is shown in place of a camera that gives no pictures. */
cv::Mat noSignal();

}  // namespace fyn::productionrules::video
