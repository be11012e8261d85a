#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "model/FynCamerasConfig.h"
#include "service/TrackingModes.h"

namespace fyn::productionrules {

/** Keeps the camera configuration up to date from what the bus says of the cameras, tells the other devices
 * what concerns them, and makes this device the primary of a 360-degree camera. */
class CameraMessages {
 public:
  /** `listener` hears what is subscribed to for a secondary device. All must outlive it. */
  CameraMessages(com::quil::pubsub::IPubSubClient& bus, com::quil::pubsub::IPubSubListener& listener,
                 TrackingModes& modes)
      : mBus(bus), mListener(listener), mModes(modes) {}

  void handleCameraParametersMsg(const std::string& topic, const std::string& msg);
  void handleCamera(const std::string& msg);
  void handleCameras(const std::string& msg);
  void handleRemoteFynCameraMovedMsg(const std::string& msg);

 private:
  void takeOwnCamera(int camId);
  void listenToPrimary(int camId);
  FynCameras getFynCamMessage(const std::string& msg) const;
  void publishForwarding();
  void becomePrimaryFor360Camera();

  com::quil::pubsub::IPubSubClient& mBus;
  com::quil::pubsub::IPubSubListener& mListener;
  TrackingModes& mModes;
  /** On a secondary device: the own cameras whose layouts are subscribed to. */
  std::set<std::int32_t> mHeardCameras;
};

}  // namespace fyn::productionrules
