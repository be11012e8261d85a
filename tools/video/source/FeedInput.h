#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tools/video/source/FrameFeed.h"

namespace fyn::productionrules::video {

/** The reader's end of a FrameFeed. When the feed goes away it looks for it again. */
class FeedInput {
 public:
  /** `socket` as FrameFeed has it. */
  explicit FeedInput(std::string socket) : mSocket(std::move(socket)) {}
  ~FeedInput();
  FeedInput(const FeedInput&) = delete;
  FeedInput& operator=(const FeedInput&) = delete;

  /** The next frame; nothing when none comes within `limit`. */
  std::optional<FedFrame> next(std::chrono::milliseconds limit);

  /** What the cameras of the latest frame show; without their inputs, which are the feed's alone. */
  const std::vector<CameraInput>& cameras() const { return mCameras; }

 private:
  bool isConnected();
  std::optional<FedFrame> receive();
  void disconnect();

  const std::string mSocket;
  int mConnection = -1;
  std::vector<CameraInput> mCameras;
};

}  // namespace fyn::productionrules::video
