#include "tools/video/source/FrameFeed.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <opencv2/imgproc.hpp>

#include "model/Geometry.h"
#include "tools/base/UsageError.h"
#include "tools/video/source/FeedMessage.h"

namespace fyn::productionrules::video {

namespace {

int listenOn(const std::string& path) {
  const sockaddr_un address = feedAddress(path);
  struct stat former {};
  if (stat(path.c_str(), &former) == 0 && S_ISSOCK(former.st_mode)) {
    // Of a program that was killed.
    unlink(path.c_str());
  }
  const int listening = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const auto* const name = reinterpret_cast<const sockaddr*>(&address);
  if (listening < 0 || bind(listening, name, sizeof(address)) != 0 || chmod(path.c_str(), 0600) != 0 ||
      listen(listening, 1) != 0) {
    const std::string why = std::strerror(errno);
    close(listening);
    throw UsageError(path + ": cannot be listened on: " + why);
  }
  return listening;
}

bool sendAll(int to, const void* data, std::size_t size) {
  const auto* from = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t sent = send(to, from, size, MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) {
      continue;
    }
    if (sent <= 0) {
      return false;
    }
    from += sent;
    size -= static_cast<std::size_t>(sent);
  }
  return true;
}

/** A picture of its own, no larger than what is looked at. */
cv::Mat fed(const cv::Mat& picture) {
  const double scale = std::min({1.0, static_cast<double>(kOutputSize.width) / picture.cols,
                                 static_cast<double>(kOutputSize.height) / picture.rows});
  cv::Mat small;
  cv::resize(picture, small, {}, scale, scale, scale < 1 ? cv::INTER_AREA : cv::INTER_NEAREST);
  return small;
}

}  // namespace

FrameFeed::FrameFeed(std::string socket, const std::vector<CameraInput>& cameras)
    : mSocket(std::move(socket)), mCameras(cameras), mListening(listenOn(mSocket)) {
  mThread = std::thread([this] { serve(); });
}

FrameFeed::~FrameFeed() {
  {
    const MutexLock lock(mMutex);
    mEnding = true;
    // Wakes who waits in it.
    shutdown(mListening, SHUT_RDWR);
    if (mReader >= 0) {
      shutdown(mReader, SHUT_RDWR);
    }
  }
  mChanged.notifyAll();
  mThread.join();
  close(mListening);
  unlink(mSocket.c_str());
}

void FrameFeed::offer(const FedFrame& frame) {
  {
    const MutexLock lock(mMutex);
    if (!mIsWanted) {
      return;
    }
  }
  FedFrame own{frame.number, frame.ms, {}, frame.speech};
  for (const cv::Mat& picture : frame.pictures) {
    own.pictures.push_back(fed(picture));
  }
  const MutexLock lock(mMutex);
  mNewest = std::move(own);
  mChanged.notifyAll();
}

void FrameFeed::serve() {
  for (;;) {
    const int reader = accept4(mListening, nullptr, nullptr, SOCK_CLOEXEC);
    {
      const MutexLock lock(mMutex);
      if (mEnding) {
        close(reader);
        return;
      }
      mReader = reader;
    }
    serveReader(reader);
    const MutexLock lock(mMutex);
    mReader = -1;
    close(reader);
  }
}

void FrameFeed::serveReader(int reader) {
  while (const std::optional<FedFrame> frame = newest()) {
    FedHeader header;
    header.cameras = static_cast<std::uint32_t>(frame->pictures.size());
    header.number = frame->number;
    header.ms = frame->ms;
    header.hasSound = frame->speech.has_value() ? 1 : 0;
    header.isSpeech = frame->speech.value_or(false) ? 1 : 0;
    bool sent = sendAll(reader, &header, sizeof(header));
    for (std::size_t camera = 0; sent && camera < frame->pictures.size(); ++camera) {
      const cv::Mat& picture = frame->pictures[camera];
      const FedPicture about{picture.cols, picture.rows, mCameras[camera].from, mCameras[camera].to};
      sent = sendAll(reader, &about, sizeof(about)) &&
             sendAll(reader, picture.data, picture.total() * picture.elemSize());
    }
    if (!sent) {
      return;
    }
  }
}

std::optional<FedFrame> FrameFeed::newest() {
  MutexLock lock(mMutex);
  mNewest.reset();
  mIsWanted = true;
  while (!mNewest && !mEnding) {
    mChanged.waitFor(lock, std::chrono::hours(1),
                     [this]() PR_REQUIRES(mMutex) { return mNewest.has_value() || mEnding; });
  }
  mIsWanted = false;
  if (mEnding) {
    return std::nullopt;
  }
  return std::exchange(mNewest, std::nullopt);
}

}  // namespace fyn::productionrules::video
