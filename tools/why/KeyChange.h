#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "config/ConfigKeys.h"
#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** Another value for one key of the configuration file, in the key's own unit. */
struct KeyChange {
  const ConfigKey* key = nullptr;
  std::int32_t from = 0;
  std::int32_t to = 0;
};

/** How large a change is: of a share in parts of the whole, else in parts of the value that was there. */
double sizeOf(const KeyChange& change);

/** The changes to try for a key whose value is `value`, coarsely: below and above it. */
std::vector<KeyChange> coarseChanges(const ConfigKey& key, std::int32_t value);

/** The step in which the smallest change is looked for, in the key's own unit. */
std::int32_t stepOf(const KeyChange& change);

/** The waits that decisions name, by `keys`. */
std::vector<const ConfigKey*> waitsNamed(const std::set<std::string>& keys);

/** What else may decide what is shown. */
std::vector<const ConfigKey*> keysBesideWaits();

/** Puts the change into the configurations that a recording brings along. */
void applyTo(RecordingEvent& event, const KeyChange& change);

}  // namespace fyn::productionrules
