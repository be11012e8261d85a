#pragma once

#include <optional>
#include <string>

#include "platform/linux/PlatformOptions.h"
#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** What a service decides with beside its messages. */
struct ServiceSettings {
  /** Every property that the service knows and that is set. */
  KeyValues properties;
  KeyValues configuration;
};

/** Reads the settings of the service on this machine where it reads them; after `toolPlatform`. */
class SettingsOfThisMachine {
 public:
  /** `path` is the configuration file, "" for the one that the service takes when none is named. */
  explicit SettingsOfThisMachine(std::string path);

  ServiceSettings read() const;

  /** The file, or what holds without one. */
  std::string configurationName() const;

 private:
  /** Empty when nobody names one. */
  const std::string mNamed;
  const std::string mPath;
};

/** Whether the bus stands on this machine, as far as its address tells. */
bool isBusOfThisMachine(const std::string& bus);

}  // namespace fyn::productionrules
