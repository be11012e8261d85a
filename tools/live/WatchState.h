#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/Mutex.h"
#include "platform/PubSub.h"

namespace fyn::productionrules {

/**
 * What a service's messages tell of it now: mode, layout, frames, reason, waits, people, message
 * rates. Messages may
 * come from any thread; one that cannot be read is counted and changes nothing.
 */
class WatchState final : public com::quil::pubsub::IPubSubListener {
 public:
  /** `clock` says when something came. */
  explicit WatchState(std::shared_ptr<const Clock> clock) : mClock(std::move(clock)) {}

  /** The topics that it wants. */
  static std::vector<std::string> topics();

  void onMessage(const std::string& topic, const std::string& message) override;

  /** One screen of text. `elapsedMs` is the time since the last call, for the rates. */
  std::string screen(std::int64_t elapsedMs);

  /** One line, with its time, for each picture, reason, mode change and people count since the last call. */
  std::vector<std::string> takeLines();

 private:
  void addLine(const std::string& text) PR_REQUIRES(mMutex);
  void readReason(const std::string& message) PR_REQUIRES(mMutex);
  void readScene(const nlohmann::json& document) PR_REQUIRES(mMutex);
  void readTimers(const nlohmann::json& document) PR_REQUIRES(mMutex);
  void readVision(const nlohmann::json& document) PR_REQUIRES(mMutex);
  void readPeopleCount(const nlohmann::json& document) PR_REQUIRES(mMutex);

  const std::shared_ptr<const Clock> mClock;
  Mutex mMutex;
  std::string mMode PR_GUARDED_BY(mMutex) = "not known yet";
  std::string mPeople PR_GUARDED_BY(mMutex) = "not known yet";
  std::string mWhy PR_GUARDED_BY(mMutex) =
      "not known: told while the property vendor.fyndebug.decisions is 1";
  std::vector<std::string> mFrames PR_GUARDED_BY(mMutex);
  std::vector<std::string> mWaits PR_GUARDED_BY(mMutex){
      "not known: told while the property vendor.fyndebug.enabled is 1"};
  std::vector<std::string> mLines PR_GUARDED_BY(mMutex);
  /** By topic, since the last screen. */
  std::map<std::string, std::uint64_t> mMessages PR_GUARDED_BY(mMutex);
  std::uint64_t mUnreadable PR_GUARDED_BY(mMutex) = 0;
};

}  // namespace fyn::productionrules
