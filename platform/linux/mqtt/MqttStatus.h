#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/ServiceHealth.h"

namespace fyn::productionrules {

/**
 * The retained document by which a broker tells how a service is doing, and when it has to go out: at each
 * connection, when a value in it changes, and every 30 seconds. Rates are of the last five seconds.
 */
class MqttStatus {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  static constexpr const char* kTopic = "/PRBStatus";
  /** At the end of the service. */
  static constexpr const char* kDown = R"({"state":"down"})";
  /** What the broker says of one that has gone without an end. */
  static constexpr const char* kLost = R"({"state":"lost"})";

  explicit MqttStatus(std::shared_ptr<const ServiceHealth> health);

  /** A connection begins, on which nothing has been said yet. */
  void begin() { mSaid.clear(); }

  /** The document that has to go out now; changes are looked for once a second. */
  std::optional<std::string> due(TimePoint now);

 private:
  std::string documentAt(TimePoint now);

  const std::shared_ptr<const ServiceHealth> mHealth;
  const std::int64_t mStartedAt;
  std::string mSaid;
  TimePoint mSaidAt;
  TimePoint mLookedAt;
  TimePoint mRateSince;
  std::uint64_t mResultsThen = 0;
  std::int64_t mResultsPerSecond = 0;
};

}  // namespace fyn::productionrules
