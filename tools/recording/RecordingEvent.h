#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "model/Geometry.h"

namespace fyn::productionrules {

/** Key and value texts, in the order in which they stand in the recording. */
using KeyValues = std::vector<std::pair<std::string, std::string>>;

struct TimePasses {};

struct BusMessage {
  std::string topic;
  std::string payload;
};

struct SetProperties {
  KeyValues values;
};

/** The whole content of the configuration file from now on. */
struct ReplaceConfig {
  KeyValues values;
};

/** The camera provider appears, appears and the platform says so, dies, or fails its next call. */
enum class ProviderChange { Up, Announced, Down, Fail };

/** One head as it really is, in one camera. */
struct TrueHead {
  /** The person's, the same in all cameras; 0 or more. */
  std::int32_t id = 0;
  /** The camera, 0 or more. */
  std::int32_t fynCamId = 0;
  /** Pixels of that camera. */
  Rect bbox;
  bool speaks = false;

  friend bool operator==(const TrueHead& a, const TrueHead& b) {
    return a.id == b.id && a.fynCamId == b.fynCamId && a.bbox == b.bbox && a.speaks == b.speaks;
  }
};

/** Who really is there, and speaks, from now on: for whoever measures, never for the service. A person has
 * one head per camera. */
struct Truth {
  std::vector<TrueHead> heads;
};

/** What wrote the recording: the compact text of a JSON object. Never for the service. */
struct RecordedBy {
  std::string document;
};

/** One line of a recording. */
struct RecordingEvent {
  /** Milliseconds from the start of the recording, 0 or more. */
  std::int64_t t = 0;
  std::variant<TimePasses, BusMessage, SetProperties, ReplaceConfig, ProviderChange, Truth, RecordedBy> what;
};

/** It says something about the recording and does nothing to the service. */
inline bool isRemark(const RecordingEvent& event) {
  return std::holds_alternative<Truth>(event.what) || std::holds_alternative<RecordedBy>(event.what);
}

}  // namespace fyn::productionrules
