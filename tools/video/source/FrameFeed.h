#pragma once

#include <cstdint>
#include <opencv2/core.hpp>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/Mutex.h"
#include "tools/video/source/CameraInputs.h"

namespace fyn::productionrules::video {

/** A frame of all cameras. */
struct FedFrame {
  std::int64_t number = 0;
  /** When it was taken, wall clock. */
  std::int64_t ms = 0;
  std::vector<cv::Mat> pictures;
  /** Whether speech is heard; nothing without sound. */
  std::optional<bool> speech = std::nullopt;
};

/**
 * Hands the frames of a program that owns the cameras to one that looks at them, over a socket on this
 * machine. Only the newest frame waits: a reader that is slow misses some, and one that hangs or dies holds
 * up nobody. The pictures are not larger than 1280 x 720.
 */
class FrameFeed {
 public:
  /** Raises UsageError when `socket`, a path, cannot be listened on. Only this user can connect. */
  FrameFeed(std::string socket, const std::vector<CameraInput>& cameras);
  ~FrameFeed();
  FrameFeed(const FrameFeed&) = delete;
  FrameFeed& operator=(const FrameFeed&) = delete;

  void offer(const FedFrame& frame);

 private:
  void serve();
  void serveReader(int reader);
  /** Nothing when it is to end. */
  std::optional<FedFrame> newest();

  const std::string mSocket;
  const std::vector<CameraInput> mCameras;
  int mListening = -1;
  Mutex mMutex;
  ConditionVariable mChanged;
  bool mEnding PR_GUARDED_BY(mMutex) = false;
  bool mIsWanted PR_GUARDED_BY(mMutex) = false;
  int mReader PR_GUARDED_BY(mMutex) = -1;
  std::optional<FedFrame> mNewest PR_GUARDED_BY(mMutex);
  std::thread mThread;
};

}  // namespace fyn::productionrules::video
