#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "layouts/cycle/LayoutDecision.h"
#include "service/ProductionRuleIPCService.h"
#include "tools/recording/RecordingEvent.h"
#include "tools/replay/ReplayBus.h"
#include "tools/replay/ReplayEnvironment.h"
#include "tools/replay/ReplayProviders.h"

namespace fyn::productionrules {

/** What a replay starts with. */
struct ReplayOptions {
  /** Content of the configuration file, whatever the recording says; nothing for what the recording says. */
  std::optional<std::string> configuration;
  /** System properties, whatever the recording says of them. */
  KeyValues properties;
  /** Log lines up to this level are built and reported (VisionSettings levels); 0 for none. */
  int logLevel = 0;
  /** Takes the debug dump instead of the device's path; "" for the device's path. */
  std::string dumpPath;
  /** Takes what the service prints on standard output; null for the process's own standard output. */
  std::ostream* standardOutput = nullptr;
  /** Told every decision; null for nobody. */
  DecisionListener* decisions = nullptr;
  /** Reads vision results; null for a reader of the replay's own. */
  std::shared_ptr<VisionResultReader> visionResults;
};

/**
 * Runs the whole service on a recording, event by event, on a virtual clock. The same events give the same
 * effects. Each has a service state of its own, so they run side by side; each on one thread at a time.
 *
 * Properties, configuration and provider that stand before the first message are in force when the service is
 * built, so effects begin with the first message, or with `finish`.
 */
class Replay {
 public:
  Replay(const ReplayOptions& options, ReplayObserver& observer);
  ~Replay();
  Replay(const Replay&) = delete;
  Replay& operator=(const Replay&) = delete;

  /** Handles the next event; their times never decrease. */
  void handle(const RecordingEvent& event);

  /** Handles what still waits for a first message. */
  void finish();

  /** Milliseconds from the start of the recording. */
  std::int64_t now() { return static_cast<std::int64_t>(mEnvironment.time().now()); }

  /** What the service reads vision results with. */
  VisionResultReader& visionResults() { return *mVisionResults; }

  /** What the service finds as its current state; for whoever looks into the service. */
  const std::shared_ptr<ServiceState>& state() const { return mEnvironment.state(); }

  /** The service; null before the first message. */
  ProductionRuleIPCService* service() { return mService.get(); }

 private:
  void start();
  bool isGiven(const std::string& property) const;
  void prepare(const RecordingEvent& event, std::optional<ProviderChange>& provider);
  void play(const RecordingEvent& event);
  void schedulePeriodicCheck();

  const ReplayOptions mOptions;
  const std::shared_ptr<VisionResultReader> mVisionResults;
  ReplayEnvironment mEnvironment;
  std::shared_ptr<ReplayBus> mBus;
  std::shared_ptr<ReplayProviders> mProviders;
  std::unique_ptr<ProductionRuleIPCService> mService;
  /** The events until the first message. */
  std::vector<RecordingEvent> mPrelude;
};

}  // namespace fyn::productionrules
