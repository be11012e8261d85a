#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/replay/Replay.h"

namespace fyn::productionrules {

/** What libFuzzer hands over, as text. */
inline std::string_view fuzzText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/** Takes one line off the beginning of a text. */
std::string_view takeLine(std::string_view& text);

/** The whole service on a virtual clock, with every line of its log and every document built and thrown away.
 */
class FuzzRoom {
 public:
  /** `mode` is the tracking mode, as its property holds it; `role` the operating mode. */
  FuzzRoom(int mode, int role);

  /** A message `waitMs` milliseconds after the one before. */
  void send(std::string_view topic, std::string_view payload, std::int64_t waitMs);

  Replay& replay() { return mReplay; }

 private:
  ReplayObserver mNobody;
  Replay mReplay;
  std::int64_t mNow = 0;
};

}  // namespace fyn::productionrules
