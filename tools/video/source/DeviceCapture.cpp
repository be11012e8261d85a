#include "tools/video/source/DeviceCapture.h"

#include <opencv2/imgproc.hpp>
#include <utility>

#include "model/Geometry.h"

namespace fyn::productionrules::video {

DeviceCapture::DeviceCapture(Opener open, const Waits& waits) : mOpen(std::move(open)), mWaits(waits) {
  mThread = std::thread([this, read = mOpen()]() mutable { capture(std::move(read)); });
}

DeviceCapture::~DeviceCapture() {
  {
    const MutexLock lock(mMutex);
    mEnding = true;
  }
  mChanged.notifyAll();
  mThread.join();
}

cv::Mat DeviceCapture::next() {
  MutexLock lock(mMutex);
  mChanged.waitFor(lock, mWaits.next, [this]() PR_REQUIRES(mMutex) { return mIsNew; });
  mIsNew = false;
  const bool hasSignal = !mNewest.empty() && std::chrono::steady_clock::now() - mTaken < mWaits.signal;
  return hasSignal ? mNewest : noSignal();
}

bool DeviceCapture::isEnding() {
  const MutexLock lock(mMutex);
  return mEnding;
}

void DeviceCapture::capture(Reader read) {
  while (!isEnding()) {
    // A picture of its own each time: the one before is still looked at.
    cv::Mat picture;
    if (read && read(picture)) {
      const MutexLock lock(mMutex);
      mNewest = picture;
      mTaken = std::chrono::steady_clock::now();
      mIsNew = true;
      mChanged.notifyAll();
      continue;
    }
    // Closes the device, else it could not be opened.
    read = nullptr;
    MutexLock lock(mMutex);
    if (mChanged.waitFor(lock, mWaits.retry, [this]() PR_REQUIRES(mMutex) { return mEnding; })) {
      return;
    }
    lock.unlock();
    try {
      read = mOpen();
    } catch (const std::exception&) {
      // It is not there yet.
    }
    lock.lock();
  }
}

cv::Mat noSignal() {
  cv::Mat picture(kOutputSize.height, kOutputSize.width, CV_8UC3, cv::Scalar::all(40));
  const char* const text = "no signal";
  int below = 0;
  const cv::Size size = cv::getTextSize(text, cv::FONT_HERSHEY_SIMPLEX, 2, 3, &below);
  cv::putText(picture, text, {(picture.cols - size.width) / 2, (picture.rows + size.height) / 2},
              cv::FONT_HERSHEY_SIMPLEX, 2, cv::Scalar::all(200), 3, cv::LINE_AA);
  return picture;
}

}  // namespace fyn::productionrules::video
