#pragma once

#include <unistd.h>

#include "DatagramBus.h"
#include "platform/CameraProvider.h"
#include "platform/DeathRecipients.h"

/** The camera provider of this device listens on the socket "camera" of the bus's folder. */
class SocketCamera final : public fyn::productionrules::IQuilCameraProvider {
 public:
  explicit SocketCamera(std::string path)
      : mPath(std::move(path)), mSocket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
  ~SocketCamera() override { close(mSocket); }
  SocketCamera(const SocketCamera&) = delete;
  SocketCamera& operator=(const SocketCamera&) = delete;

  /** A socket tells of nobody's death, but a document that nobody takes does: the service looks for the
   * provider again. */
  bool setSceneJson(const std::string& json) override { return sendDatagram(mSocket, mPath, json); }

  bool linkToDeath(const std::shared_ptr<fyn::productionrules::DeathRecipient>& recipient,
                   std::uint64_t cookie) override {
    return mRecipients.link(recipient, cookie);
  }

  void unlinkToDeath(const std::shared_ptr<fyn::productionrules::DeathRecipient>& recipient) override {
    mRecipients.unlink(recipient);
  }

 private:
  const std::string mPath;
  const int mSocket;
  fyn::productionrules::DeathRecipients mRecipients;
};

class SocketCameras final : public fyn::productionrules::ICameraProviders {
 public:
  explicit SocketCameras(const std::string& folder) : mPath(folder + "/camera") {}

  std::shared_ptr<fyn::productionrules::IQuilCameraProvider> getService(
      const std::string& /*instance*/) override {
    return access(mPath.c_str(), W_OK) == 0 ? std::make_shared<SocketCamera>(mPath) : nullptr;
  }

 private:
  const std::string mPath;
};
