#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "model/FynCamInfo.h"
#include "model/MLData.h"
#include "model/VisionResultReader.h"
#include "modes/GroupTrackingMode.h"
#include "modes/MultiStreamTrackingMode.h"
#include "modes/PeopleFramingMode.h"
#include "modes/SpeakerFramingMode.h"
#include "platform/BaseIPCService.h"
#include "platform/FynFrameTracker.h"
#include "service/DecisionPublisher.h"
#include "service/FynFileWriter.h"
#include "service/JsonLayoutNotifier.h"
#include "service/QuilProviderConnection.h"

namespace fyn::productionrules {

/**
 * The production-rules service: takes every bus message, routes it by topic, drives the active tracking mode
 * and publishes what it decides. All of it runs on the dispatch thread.
 */
class ProductionRuleIPCService final : public BaseIPCService {
 public:
  ProductionRuleIPCService(const Platform& platform, const std::string& name);
  ~ProductionRuleIPCService() override;

  void init() override;
  using BaseIPCService::process;
  void process(const std::string& topic, const std::string& msg) override;
  void periodicCheck() override;

  bool connectToQuilProvider();
  void rescheduleQuilProviderConnection();

  /** Told every decision of every mode; null for nobody. Must outlive the service. */
  void setDecisionListener(DecisionListener* listener);

  /** Who reads vision results instead of the service's own reader, before `init`: for hosts that run several
   * services on the same results and one thread. */
  void setVisionResultReader(std::shared_ptr<VisionResultReader> reader) {
    mVisionResults = std::move(reader);
  }

  /** The active tracking mode. */
  BaseTrackingMode& trackingMode() { return *mTrackingMode; }
  FramingMode framingMode() const { return mFramingMode; }
  FynOperatingMode operatingMode() const { return mOperatingMode; }

 private:
  struct Route;
  static const Route* findRoute(const std::string& topic, const std::string& msg);

  // Start
  void installCallbacks();
  void installSecondaryCallback();
  void openDumpWriter();
  void listenToDecisions();

  // Vision results
  void handleVisionResult(const std::string& topic, const std::string& msg);
  std::shared_ptr<MLData> getMLData(const std::string& msg);
  void processMlData(const std::shared_ptr<MLData>& mlData);
  bool enforceFramingMode();
  void sendPeriodically();
  void countPictures();

  // Control
  void reloadConfiguration(const std::string& topic, const std::string& msg);
  void handleResetLayouts(const std::string& topic, const std::string& msg);
  void handleDumpDebug(const std::string& topic, const std::string& msg);
  void startRecording(const std::string& topic, const std::string& msg);
  void stopRecording(const std::string& topic, const std::string& msg);
  void handleTrackingMode(const std::string& topic, const std::string& msg);
  void updateTrackingMode(FramingMode newMode);
  void setFynOperatingMode(FynOperatingMode mode);

  // Secondary layouts
  void handleSecondaryLayout(const std::string& topic, const std::string& msg);
  std::vector<std::shared_ptr<Layout>> getSecondaryLayoutData(const std::string& msg) const;
  void processSecondaryLayout(const std::vector<std::shared_ptr<Layout>>& layouts);

  // Cameras
  void handleCameraParametersMsg(const std::string& topic, const std::string& msg);
  void handleCamera(const std::string& topic, const std::string& msg);
  void takeOwnCamera(int camId);
  void handleCameras(const std::string& topic, const std::string& msg);
  FynCameras getFynCamMessage(const std::string& msg) const;
  void publishForwarding();
  void becomePrimaryFor360Camera();
  void handleRemoteFynCameraMoved(const std::string& topic, const std::string& msg);
  void handleRemoteFynCameraMovedMsg(const std::string& msg);

  // Debug
  void logCameras(const std::string& topic, const std::string& msg);
  void logCameraId(const std::string& topic, const std::string& msg);

  std::shared_ptr<QuilProviderConnection> mProvider;
  std::unique_ptr<FynFileWriter> mFileWriter;
  bool mDebug = false;
  JsonLayoutNotifier mNotifier;
  DecisionPublisher mDecisionPublisher;
  SpeakerFramingMode mSpeakerFramingMode;
  PeopleFramingMode mPeopleFramingMode;
  GroupTrackingMode mGroupTrackingMode;
  MultiStreamTrackingMode mMultiStreamTrackingMode;
  BaseTrackingMode* mTrackingMode;
  FramingMode mFramingMode = FramingMode::GroupFraming;
  FynOperatingMode mOperatingMode = FynOperatingMode::Standalone;
  std::shared_ptr<VisionResultReader> mVisionResults = std::make_shared<VisionResultReader>();
  FynFrameTracker mFrameTracker;
  bool mRecording = false;
  /** On a secondary device: the own cameras whose layouts are subscribed to. */
  std::set<std::int32_t> mHeardCameras;
};

}  // namespace fyn::productionrules
