#pragma once

#include "service/JsonLayoutNotifier.h"
#include "service/QuilProviderConnection.h"
#include "service/TrackingModes.h"

namespace fyn::productionrules {

/** Publishes on the bus what the tracking modes say through the notifier, and why they decided so; scenes go
 * to the camera provider as well. */
class ResultPublisher final : private DecisionListener {
 public:
  /** All must outlive it. */
  ResultPublisher(const Platform& platform, JsonLayoutNotifier& notifier, TrackingModes& modes,
                  QuilProviderConnection& provider);

  /** Told every decision of every mode, before it is published; null for nobody. */
  void setDecisionListener(DecisionListener* next);

  /** Follows the configuration: an engine that nobody listens to makes no decision documents at all. */
  void listenToDecisions();

 private:
  void onDecision(const LayoutDecision& decision) override;
  void publish(std::string_view topic, const std::string& document);
  void countPictures();

  const Platform& mPlatform;
  TrackingModes& mModes;
  DecisionListener* mNextListener = nullptr;
};

}  // namespace fyn::productionrules
