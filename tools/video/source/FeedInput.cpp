#include "tools/video/source/FeedInput.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tools/video/source/FeedMessage.h"

namespace fyn::productionrules::video {

namespace {

// The rest of a frame that has begun comes at once, or its sender hangs.
constexpr timeval kRestOfFrame{0, 500000};

bool receiveAll(int from, void* data, std::size_t size) {
  return recv(from, data, size, MSG_WAITALL) == static_cast<ssize_t>(size);
}

bool isInOrder(const FedHeader& header) {
  return header.magic == FedHeader().magic && header.cameras > 0 && header.cameras <= kMostFedCameras;
}

bool isInOrder(const FedPicture& picture) {
  return picture.width > 0 && picture.width <= kLargestFedSide && picture.height > 0 &&
         picture.height <= kLargestFedSide && picture.from < picture.to;
}

}  // namespace

FeedInput::~FeedInput() {
  disconnect();
}

std::optional<FedFrame> FeedInput::next(std::chrono::milliseconds limit) {
  const auto ms = static_cast<int>(limit.count());
  if (!isConnected()) {
    poll(nullptr, 0, ms);
    return std::nullopt;
  }
  pollfd readable{mConnection, POLLIN, 0};
  if (poll(&readable, 1, ms) <= 0) {
    return std::nullopt;
  }
  std::optional<FedFrame> frame = receive();
  if (!frame) {
    disconnect();
  }
  return frame;
}

bool FeedInput::isConnected() {
  if (mConnection < 0) {
    const sockaddr_un address = feedAddress(mSocket);
    mConnection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    setsockopt(mConnection, SOL_SOCKET, SO_RCVTIMEO, &kRestOfFrame, sizeof(kRestOfFrame));
    if (connect(mConnection, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
      disconnect();
    }
  }
  return mConnection >= 0;
}

std::optional<FedFrame> FeedInput::receive() {
  FedHeader header;
  if (!receiveAll(mConnection, &header, sizeof(header)) || !isInOrder(header)) {
    return std::nullopt;
  }
  FedFrame frame{header.number, header.ms, {}, std::nullopt};
  if (header.hasSound != 0) {
    frame.speech = header.isSpeech != 0;
  }
  mCameras.clear();
  for (std::uint32_t camera = 0; camera < header.cameras; ++camera) {
    FedPicture about;
    if (!receiveAll(mConnection, &about, sizeof(about)) || !isInOrder(about)) {
      return std::nullopt;
    }
    cv::Mat picture(about.height, about.width, CV_8UC3);
    if (!receiveAll(mConnection, picture.data, picture.total() * picture.elemSize())) {
      return std::nullopt;
    }
    mCameras.push_back({"", about.from, about.to});
    frame.pictures.push_back(std::move(picture));
  }
  return frame;
}

void FeedInput::disconnect() {
  if (mConnection >= 0) {
    close(mConnection);
    mConnection = -1;
  }
}

}  // namespace fyn::productionrules::video
