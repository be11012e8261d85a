#include "tools/video/camera/SceneService.h"

#include <sdbus-c++/sdbus-c++.h>

#include <chrono>

#include "platform/VisionSettings.h"
#include "platform/linux/dbus/DBusCameraProviders.h"
#include "tools/base/UsageError.h"
#include "tools/video/camera/Player.h"

namespace fyn::productionrules::video {

namespace {

using Names = DBusCameraProviderNames;

constexpr std::chrono::seconds kRetry{1};

std::unique_ptr<sdbus::IConnection> connectTo(const std::string& bus) {
  if (bus == "session") {
    return sdbus::createSessionBusConnection();
  }
  return bus == "system" ? sdbus::createSystemBusConnection()
                         : sdbus::createSessionBusConnectionWithAddress(bus);
}

}  // namespace

/** A connection and what is offered on it. */
struct SceneService::Served {
  std::unique_ptr<sdbus::IConnection> connection;
  std::unique_ptr<sdbus::IObject> object;
};

SceneService::SceneService(std::string bus, std::function<void(const std::string&)> take)
    : mBus(std::move(bus)), mTake(std::move(take)) {
  try {
    mServed = serveOnce();
  } catch (const sdbus::Error& fault) {
    const bool isTaken = fault.getName() == "org.freedesktop.DBus.Error.FileExists";
    throw UsageError("no camera provider on the " + mBus +
                     " bus: " + (isTaken ? "another one serves there" : fault.getMessage()));
  }
  mThread = std::thread([this, served = mServed] { keepServing(served); });
}

SceneService::~SceneService() {
  {
    const MutexLock lock(mMutex);
    mEnding = true;
    if (mServed) {
      mServed->connection->leaveEventLoop();
    }
  }
  mWakeUp.notifyAll();
  mThread.join();
}

std::shared_ptr<SceneService::Served> SceneService::serveOnce() {
  auto served = std::make_shared<Served>();
  served->connection = connectTo(mBus);
  served->object = sdbus::createObject(*served->connection, Names::kPath);
  served->object->registerMethod(Names::kSetSceneJson)
      .onInterface(Names::kInterface)
      .withInputParamNames("document")
      .implementedAs([this](const std::string& document) { mTake(document); });
  served->object->finishRegistration();
  // Last, so that whoever sees the name can call at once.
  served->connection->requestName(Names::kService);
  return served;
}

void SceneService::keepServing(std::shared_ptr<Served> served) {
  while (served) {
    try {
      served->connection->enterEventLoop();
    } catch (const sdbus::Error& fault) {
      PRB_LOGW(kCameraTag, "the %s bus has gone: %s", mBus.c_str(), fault.what());
    }
    served.reset();
    served = serveAgain();
  }
}

std::shared_ptr<SceneService::Served> SceneService::serveAgain() {
  MutexLock lock(mMutex);
  mServed.reset();
  while (!mEnding) {
    try {
      mServed = serveOnce();
      PRB_LOGI(kCameraTag, "serving on the %s bus again", mBus.c_str());
      return mServed;
    } catch (const sdbus::Error&) {
      mWakeUp.waitFor(lock, kRetry, [this]() PR_REQUIRES(mMutex) { return mEnding; });
    }
  }
  return nullptr;
}

}  // namespace fyn::productionrules::video
