#include "tools/replay/Replay.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <utility>

#include "config/PrConfig.h"
#include "platform/ServiceStateScope.h"

namespace fyn::productionrules {

namespace {

// The one place that a replay's tasks run: its virtual time.
std::shared_ptr<DelayedTasks> tasksOf(VirtualTime& time) {
  return std::shared_ptr<DelayedTasks>(&time, [](DelayedTasks*) {});
}

std::string configurationText(const KeyValues& values) {
  std::string text;
  for (const auto& [key, value] : values) {
    text.append(key).append("=").append(value).append("\n");
  }
  return text;
}

}  // namespace

Replay::Replay(const ReplayOptions& options, ReplayObserver& observer)
    : mOptions(options),
      mVisionResults(options.visionResults ? options.visionResults : std::make_shared<VisionResultReader>()),
      mEnvironment(observer, options.logLevel),
      mBus(std::make_shared<ReplayBus>(observer)),
      mProviders(std::make_shared<ReplayProviders>(observer)) {
  if (mOptions.configuration) {
    mEnvironment.setConfiguration(*mOptions.configuration);
  }
  for (const auto& [key, value] : mOptions.properties) {
    mEnvironment.properties().set(key, value);
  }
}

Replay::~Replay() {
  const ServiceStateScope scope(state());
  mService.reset();
}

void Replay::handle(const RecordingEvent& event) {
  const ServiceStateScope scope(state());
  if (mService != nullptr) {
    play(event);
    return;
  }
  mPrelude.push_back(event);
  if (std::holds_alternative<BusMessage>(event.what)) {
    start();
  }
}

void Replay::finish() {
  const ServiceStateScope scope(state());
  if (mService == nullptr && !mPrelude.empty()) {
    start();
  }
}

void Replay::start() {
  std::optional<ProviderChange> provider;
  for (const RecordingEvent& event : mPrelude) {
    prepare(event, provider);
  }
  if (provider) {
    mProviders->apply(*provider);
  }
  mEnvironment.time().advanceTo(static_cast<std::uint64_t>(mPrelude.front().t));

  Platform platform;
  platform.bus = mBus;
  platform.providers = mProviders;
  platform.tasks = tasksOf(mEnvironment.time());
  platform.standardOutput = mOptions.standardOutput;
  if (!mOptions.dumpPath.empty()) {
    platform.openDump = [path = mOptions.dumpPath](const std::string& /*devicePath*/) {
      return std::make_unique<std::ofstream>(path, std::ios::binary);
    };
  }
  PrConfig::load(configurationPath());
  mService = std::make_unique<ProductionRuleIPCService>(platform, "prServ");
  mService->setDecisionListener(mOptions.decisions);
  mService->setVisionResultReader(mVisionResults);
  mService->init();
  schedulePeriodicCheck();

  for (const RecordingEvent& event : std::exchange(mPrelude, {})) {
    if (std::holds_alternative<BusMessage>(event.what)) {
      play(event);
    } else {
      mEnvironment.time().advanceTo(static_cast<std::uint64_t>(event.t));
    }
  }
}

bool Replay::isGiven(const std::string& property) const {
  return std::any_of(mOptions.properties.begin(), mOptions.properties.end(),
                     [&](const auto& given) { return given.first == property; });
}

// Puts into force what the service is built with. Of several changes of the provider's life the last counts.
void Replay::prepare(const RecordingEvent& event, std::optional<ProviderChange>& provider) {
  if (const auto* const properties = std::get_if<SetProperties>(&event.what)) {
    for (const auto& [key, value] : properties->values) {
      if (!isGiven(key)) {
        mEnvironment.properties().set(key, value);
      }
    }
  } else if (const auto* const config = std::get_if<ReplaceConfig>(&event.what)) {
    if (!mOptions.configuration) {
      mEnvironment.setConfiguration(configurationText(config->values));
    }
  } else if (const auto* const change = std::get_if<ProviderChange>(&event.what)) {
    if (*change == ProviderChange::Fail) {
      mProviders->apply(*change);
    } else {
      provider = *change;
    }
  }
}

void Replay::play(const RecordingEvent& event) {
  mEnvironment.time().advanceTo(static_cast<std::uint64_t>(event.t));
  if (const auto* const message = std::get_if<BusMessage>(&event.what)) {
    mBus->deliver(message->topic, message->payload);
    mService->handlePending();
  } else if (const auto* const change = std::get_if<ProviderChange>(&event.what)) {
    mProviders->apply(*change);
  } else {
    std::optional<ProviderChange> none;
    prepare(event, none);
  }
}

void Replay::schedulePeriodicCheck() {
  mEnvironment.time().runAfter(std::chrono::milliseconds(mService->periodMs()), [this] {
    mService->periodicCheck();
    schedulePeriodicCheck();
  });
}

}  // namespace fyn::productionrules
