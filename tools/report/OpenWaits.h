#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "layouts/cycle/LayoutDecision.h"

namespace fyn::productionrules {

/** A wait that runs, or ran. */
struct OpenWait {
  /** In milliseconds from the start of the recording. */
  std::int64_t since = 0;
  /** The decision that began it. */
  LayoutDecision decision;
};

enum class WaitEnd { RanOut, Dropped };

/** Which waits run, by the decisions of a service. A wait that begins anew, or whose layout goes, was
 * dropped. */
class OpenWaits {
 public:
  /** Told each wait that has ended. */
  using EndListener = std::function<void(const OpenWait& wait, WaitEnd end)>;

  explicit OpenWaits(EndListener onEnd) : mOnEnd(std::move(onEnd)) {}

  /** A decision of `t`, in milliseconds; they never go back in time. */
  void take(std::int64_t t, const LayoutDecision& decision);

  /** By stream; of a stream first the wait of its next layout (frame -1), then those of its frames. */
  const std::map<std::pair<int, int>, OpenWait>& running() const { return mRunning; }

 private:
  void begin(std::pair<int, int> place, OpenWait wait);
  void end(std::pair<int, int> place, WaitEnd how);
  void endAll(int stream);

  EndListener mOnEnd;
  std::map<std::pair<int, int>, OpenWait> mRunning;
};

}  // namespace fyn::productionrules
