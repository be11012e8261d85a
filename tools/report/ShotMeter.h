#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "tools/report/Measurement.h"
#include "tools/report/RoomState.h"

namespace fyn::productionrules {

/** Measures the shots of each stream: how long they last, and which cuts between them serve nobody. */
class ShotMeter {
 public:
  /** A cut that goes back to the people of the shot before within this time is one there and back, in
   * milliseconds. */
  static constexpr std::int64_t kThereAndBackMs = 4000;

  explicit ShotMeter(Measurement& measurement) : mMeasurement(measurement) {}

  /** The streams `changed` are about to get other pictures than those of `room`. */
  void leave(const RoomState& room, const std::set<int>& changed);

  /** Since `t` they have those of `room`. */
  void show(std::int64_t t, const RoomState& room, const std::set<int>& changed);

 private:
  /** Whom a frame shows, and where. */
  struct Content {
    std::uint32_t camera = 0;
    Rect dest;
    std::set<std::int64_t> people;
  };

  struct Shot {
    StreamPicture picture;
    std::int64_t began = 0;
    /** Who was in the room when the latest picture came. */
    std::set<std::int64_t> room;
    std::vector<Content> left;
    /** What the latest cut to other people or another camera has left, and when. */
    std::optional<std::vector<Content>> before;
    std::int64_t cutAt = 0;
  };

  static std::vector<Content> contentOf(const RoomState& room, std::size_t stream);
  void cut(std::int64_t t, Shot& shot, const std::vector<Content>& now);

  Measurement& mMeasurement;
  std::map<int, Shot> mShots;
};

}  // namespace fyn::productionrules
