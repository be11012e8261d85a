#pragma once

#include <optional>
#include <string>

#include "platform/PropertyStore.h"
#include "tools/replay/Replay.h"
#include "tools/view/EngineLines.h"

namespace fyn::productionrules {

/** What a shadow is set up with. All of it is read anew when the live service is told to read its own again.
 */
struct ShadowSettings {
  /** Path of the configuration file; "" for none. */
  std::string configuration;
  /** Properties of this machine; null for none. It is only read. */
  const PropertyStore* properties = nullptr;
  /** Go over those. */
  KeyValues ownProperties;
};

/**
 * A service that is given what a live one is given and publishes to nobody: its decisions tell why the live
 * one did what it did. It follows the framing mode of the live one. Its clock is the time of the messages.
 * Used from one thread at a time.
 */
class ShadowService {
 public:
  /** `sink` gets decisions, waits and frames. */
  ShadowService(LineSink& sink, ShadowSettings settings);

  /** A message of the live bus, whoever sent it. `t`: milliseconds, never less than before. */
  void take(std::int64_t t, const std::string& topic, const std::string& message);

 private:
  void deliver(std::string_view topic, std::string_view message);
  void readSettings();
  void takeScene(const std::string& message);
  void followMode(const std::string& name);

  const ShadowSettings mSettings;
  std::int64_t mTime = 0;
  EngineLines mEngine;
  ReplayObserver mNobody;
  Replay mReplay;
  /** The framing mode that the live service was seen in last; "" for not yet. */
  std::string mMode;
};

}  // namespace fyn::productionrules
