#include "platform/linux/mqtt/MqttStatus.h"

#include <cmath>
#include <utility>

#include "platform/Ticks.h"

namespace fyn::productionrules {

namespace {

constexpr std::chrono::seconds kLook{1};
constexpr std::chrono::seconds kRateWindow{5};
constexpr std::chrono::seconds kRepeat{30};

}  // namespace

MqttStatus::MqttStatus(std::shared_ptr<const ServiceHealth> health)
    : mHealth(std::move(health)), mStartedAt(getWallTs64()) {}

std::optional<std::string> MqttStatus::due(TimePoint now) {
  if (!mSaid.empty() && now - mLookedAt < kLook) {
    return std::nullopt;
  }
  mLookedAt = now;
  std::string document = documentAt(now);
  if (document == mSaid && now - mSaidAt < kRepeat) {
    return std::nullopt;
  }
  mSaid = document;
  mSaidAt = now;
  return document;
}

std::string MqttStatus::documentAt(TimePoint now) {
  const ServiceHealth::Reading reading = mHealth->read();
  if (mRateSince == TimePoint()) {
    mRateSince = now;
    mResultsThen = reading.results;
  }
  if (const std::chrono::duration<double> window = now - mRateSince; window >= kRateWindow) {
    mResultsPerSecond = std::llround(static_cast<double>(reading.results - mResultsThen) / window.count());
    mRateSince = now;
    mResultsThen = reading.results;
  }
  return R"({"state":"up","version":")" PR_VERSION R"(","mode":")" + reading.mode + R"(","provider":)" +
         (reading.provider ? "true" : "false") + R"(,"resultsPerSecond":)" +
         std::to_string(mResultsPerSecond) + R"(,"droppedMessages":)" +
         std::to_string(reading.droppedMessages) + R"(,"startedAt":)" + std::to_string(mStartedAt) + "}";
}

}  // namespace fyn::productionrules
