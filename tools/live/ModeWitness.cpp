#include "tools/live/ModeWitness.h"

#include <nlohmann/json.hpp>
#include <thread>

namespace fyn::productionrules {

namespace {

/** The mode of the first stream of a scene document; "" for a document of another kind. */
std::string modeOfScene(const std::string& text) {
  const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
  const auto mode = nlohmann::json::json_pointer("/streams/0/TrackingMode");
  return document.is_object() && document.contains(mode) && document.at(mode).is_string()
             ? document.at(mode).get<std::string>()
             : std::string();
}

}  // namespace

void ModeWitness::onMessage(const std::string& topic, const std::string& message) {
  const std::string said = topic == topics::kTrackingMode ? message
                           : topic == topics::kScene      ? modeOfScene(message)
                                                          : std::string();
  const MutexLock lock(mMutex);
  mSawResults = mSawResults || topic == topics::kVisionResult;
  if (!said.empty()) {
    mMode = said;
  }
}

bool ModeWitness::waitForMode(std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (mode() != mWanted) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

std::string ModeWitness::mode() const {
  const MutexLock lock(mMutex);
  return mMode;
}

bool ModeWitness::sawResults() const {
  const MutexLock lock(mMutex);
  return mSawResults;
}

}  // namespace fyn::productionrules
