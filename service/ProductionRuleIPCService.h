#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/BaseIPCService.h"
#include "service/CameraMessages.h"
#include "service/FramingInput.h"
#include "service/JsonLayoutNotifier.h"
#include "service/QuilProviderConnection.h"
#include "service/ResultPublisher.h"
#include "service/TrackingModes.h"

namespace fyn::productionrules {

/**
 * The production-rules service: puts its parts together and routes every bus message by topic to the one that
 * it concerns. All of it runs on the dispatch thread.
 */
class ProductionRuleIPCService final : public BaseIPCService {
 public:
  ProductionRuleIPCService(const Platform& platform, const std::string& name);
  ~ProductionRuleIPCService() override;

  void init() override;
  using BaseIPCService::process;
  void process(const std::string& topic, const std::string& msg) override;
  void periodicCheck() override {}

  bool connectToQuilProvider() { return mProvider->connectToQuilProvider(); }
  void rescheduleQuilProviderConnection() { mProvider->rescheduleQuilProviderConnection(); }

  /** Told every decision of every mode; null for nobody. Must outlive the service. */
  void setDecisionListener(DecisionListener* listener) { mPublisher.setDecisionListener(listener); }

  /** Who reads vision results instead of the service's own reader, before `init`: for hosts that run several
   * services on the same results and one thread. */
  void setVisionResultReader(std::shared_ptr<VisionResultReader> reader) {
    mInput.setReader(std::move(reader));
  }

  /** The active tracking mode. */
  BaseTrackingMode& trackingMode() { return mModes.active(); }
  FramingMode framingMode() const { return mModes.framingMode(); }
  FynOperatingMode operatingMode() const { return mModes.operatingMode(); }

 private:
  void reloadConfiguration();

  std::shared_ptr<QuilProviderConnection> mProvider;
  JsonLayoutNotifier mNotifier;
  TrackingModes mModes;
  ResultPublisher mPublisher;
  FramingInput mInput;
  CameraMessages mCameras;
};

}  // namespace fyn::productionrules
