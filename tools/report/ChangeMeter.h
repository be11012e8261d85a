#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "tools/report/Measurement.h"
#include "tools/report/Picture.h"

namespace fyn::productionrules {

/** Counts the changes of what the streams show, and those that were undone soon. */
class ChangeMeter {
 public:
  /** A change that goes back to what looked alike within this time is flicker, in milliseconds. */
  static constexpr std::int64_t kFlickerMs = 5000;

  explicit ChangeMeter(Measurement& measurement) : mMeasurement(measurement) {}

  /** A stream shows `picture` from `t` on. `decided`: the engine decided on a new layout, even if the frames
   * are arranged as before. */
  void show(std::int64_t t, const StreamPicture& picture, bool decided);

 private:
  struct Shown {
    StreamPicture picture;
    std::optional<StreamPicture> before;
    std::optional<std::int64_t> changedAt;
  };

  Measurement& mMeasurement;
  std::map<int, Shown> mStreams;
};

}  // namespace fyn::productionrules
