#include <gtest/gtest.h>

#include "platform/PubSub.h"

namespace com::quil::pubsub {
namespace {

struct Coverage {
  const char* subscribed;
  const char* topic;
  bool covered;
};

TEST(TopicCovers, TheTopicItselfAndEveryTopicBeneath) {
  constexpr Coverage kRows[] = {
      {"/ctl", "/ctl", true},
      {"/ctl", "/ctl/tracking-mode", true},
      {"/debug/log", "/debug/log/fyncamid", true},
      {"/cameraParameters/head", "/cameraParameters/head/2", true},
      {"/cameraParameters/head", "/cameraParameters", false},
      {"/cameraParameters/head", "/cameraParameters/tail/2", false},
      {"/camera", "/cameras", false},  // a longer word is another topic
      {"/camera", "/cameraParameters/head", false},
      {"/ctl", "/ctl-passthru-remote", false},
      {"/ctl", "/Ctl", false},
      {"/ctl", "/ct", false},
      {"/ctl", "", false},
      {"/PRBOutSecondary/1", "/PRBOutSecondary/12", false},
      {"/a", "/b/a", false},
  };
  for (const Coverage& row : kRows) {
    EXPECT_EQ(topicCovers(row.subscribed, row.topic), row.covered) << row.subscribed << " and " << row.topic;
  }
}

TEST(AppendSubtopic, PutsOneSlashBetween) {
  EXPECT_EQ(appendSubtopic("/PRBOutSecondary", "2"), "/PRBOutSecondary/2");
  EXPECT_EQ(appendSubtopic("/FynCameraMoved", "remote"), "/FynCameraMoved/remote");
}

}  // namespace
}  // namespace com::quil::pubsub
