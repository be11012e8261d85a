#include "tools/replay/RealTimePace.h"

#include <algorithm>
#include <csignal>
#include <thread>

namespace fyn::productionrules {

namespace {

// How long Ctrl-C may take to be seen.
constexpr std::chrono::milliseconds kSlice{50};

volatile std::sig_atomic_t gEndAsked = 0;

void askToEnd(int /*signal*/) {
  gEndAsked = 1;
}

}  // namespace

RealTimePace::RealTimePace(double speed) : mSpeed(speed), mStart(std::chrono::steady_clock::now()) {
  gEndAsked = 0;
  std::signal(SIGINT, askToEnd);
  std::signal(SIGTERM, askToEnd);
}

RealTimePace::~RealTimePace() {
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
}

bool RealTimePace::waitUntil(std::int64_t t) const {
  if (mSpeed > 0) {
    const auto due = mStart + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                  std::chrono::duration<double, std::milli>(static_cast<double>(t) / mSpeed));
    for (auto now = std::chrono::steady_clock::now(); now < due && gEndAsked == 0;
         now = std::chrono::steady_clock::now()) {
      std::this_thread::sleep_for(std::min<std::chrono::steady_clock::duration>(due - now, kSlice));
    }
  }
  return gEndAsked == 0;
}

}  // namespace fyn::productionrules
