#include <gtest/gtest.h>

#include "platform/embedded/InProcessBus.h"
#include "tests/testing/NotingListener.h"

namespace fyn::productionrules {
namespace {

using testing::NotingListener;
using Lines = std::vector<std::string>;

TEST(InProcessBus, EachListenerOfAClientIsReached) {
  InProcessBus bus;
  const auto subscriber = bus.connect();
  NotingListener first;
  NotingListener second;
  subscriber->subscribe("/ctl", first);
  subscriber->subscribe("/ctl", second);
  bus.connect()->publish("/ctl", "x");
  EXPECT_EQ(first.received(), Lines{"/ctl x"});
  EXPECT_EQ(second.received(), Lines{"/ctl x"});
}

TEST(InProcessBus, AClosedClientNeitherSendsNorReceives) {
  InProcessBus bus;
  const auto closed = bus.connect();
  const auto open = bus.connect();
  NotingListener atClosed;
  NotingListener atOpen;
  closed->subscribe("/ctl", atClosed);
  open->subscribe("/ctl", atOpen);
  closed->close();
  open->publish("/ctl", "x");
  closed->publish("/ctl", "y");
  closed->close();
  EXPECT_EQ(atClosed.received(), Lines{});
  EXPECT_EQ(atOpen.received(), Lines{});
}

TEST(InProcessBus, AListenerMayAnswerSubscribeAndCloseWhileItIsCalled) {
  InProcessBus bus;
  const auto asking = bus.connect();
  const auto answering = bus.connect();
  auto leaving = bus.connect();  // comes after the answering client, so it goes while a message is on its way
  NotingListener answers;
  NotingListener questions;
  NotingListener neverReached;
  asking->subscribe("/answer", answers);
  leaving->subscribe("/question", neverReached);
  questions.onReceived = [&] {
    answering->publish("/answer", "42");
    answering->subscribe("/later", questions);
    leaving.reset();
  };
  answering->subscribe("/question", questions);
  asking->publish("/question", "?");
  EXPECT_EQ(answers.received(), Lines{"/answer 42"});
  EXPECT_EQ(questions.received(), Lines{"/question ?"});
  EXPECT_EQ(neverReached.received(), Lines{});
  questions.onReceived = nullptr;
  asking->publish("/later", "!");
  EXPECT_EQ(questions.received().back(), "/later !");
}

}  // namespace
}  // namespace fyn::productionrules
