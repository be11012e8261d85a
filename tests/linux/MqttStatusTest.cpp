#if PR_HAVE_MQTT
#include <gtest/gtest.h>

#include <memory>

#include "platform/linux/mqtt/MqttStatus.h"

namespace fyn::productionrules::testing {
namespace {

TEST(MqttStatus, GoesOutWhenItChangesAndNowAndThen) {
  using std::chrono::seconds;
  const auto health = std::make_shared<ServiceHealth>();
  MqttStatus status(health);
  const MqttStatus::TimePoint start{std::chrono::hours(1)};
  health->setMode("GroupFraming");
  const std::string first = status.due(start).value_or("");
  EXPECT_EQ(first.rfind(R"({"state":"up","version":")", 0), 0U) << first;
  EXPECT_NE(first.find(R"("mode":"GroupFraming","provider":false,"resultsPerSecond":0,"droppedMessages":0,)"),
            std::string::npos)
      << first;
  for (int count = 0; count < 150; ++count) {
    health->countResult();
  }
  EXPECT_EQ(status.due(start + seconds(4)), std::nullopt);
  EXPECT_NE(status.due(start + seconds(5)).value_or("").find(R"("resultsPerSecond":30,)"), std::string::npos);
  health->setProvider(true);
  EXPECT_EQ(status.due(start + std::chrono::milliseconds(5500)), std::nullopt);
  EXPECT_NE(status.due(start + seconds(6)).value_or("").find(R"("provider":true,)"), std::string::npos);
  EXPECT_NE(status.due(start + seconds(10)).value_or("").find(R"("resultsPerSecond":0,)"), std::string::npos);
  EXPECT_EQ(status.due(start + seconds(39)), std::nullopt);
  EXPECT_NE(status.due(start + seconds(40)), std::nullopt);
  status.begin();
  EXPECT_NE(status.due(start + seconds(40)), std::nullopt);
}

}  // namespace
}  // namespace fyn::productionrules::testing
#endif
