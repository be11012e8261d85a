// What a decision looks like on the bus, and when it gets there.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "service/DecisionDocument.h"
#include "tests/service/RoomService.h"

namespace fyn::productionrules::testing {
namespace {

TEST(DecisionDocument, LeavesOutWhatSaysNothing) {
  LayoutDecision reset;
  reset.kind = DecisionKind::Reset;
  reset.from = FramingType::ROOM;
  EXPECT_EQ(decisionDocument(7, reset), R"({"t":7,"streamid":0,"kind":"reset","from":"ROOM"})");

  LayoutDecision full;
  full.kind = DecisionKind::Adopted;
  full.streamId = 2;
  full.from = FramingType::HEAD;
  full.to = FramingType::PROXIMITY;
  full.difference = LayoutDifference::Camera;
  full.reason = "a \"rule\"";
  full.timer = "headToOtherLayoutChangeTimer";
  full.key = "persist.pf.fdtimers.layoutchange.headtoother";
  full.configuredMs = 4000;
  full.reductionMs = 2800;
  full.waitMs = 1200;
  full.waitedMs = 1233;
  full.frameIndex = 1;
  full.headPosition = HeadPosition::HEAD_ON_EDGE;
  EXPECT_EQ(decisionDocument(4294967295U, full),
            R"({"t":4294967295,"streamid":2,"kind":"adopted","from":"HEAD","to":"PROXIMITY",)"
            R"("difference":"the camera",)"
            R"("reason":"a \"rule\"; 4000 ms, less 2800 because people have left",)"
            R"("timer":"headToOtherLayoutChangeTimer","key":"persist.pf.fdtimers.layoutchange.headtoother",)"
            R"("waitMs":1200,"waitedMs":1233,"frameindex":1,"headPosition":"HEAD_ON_EDGE"})");
}

TEST(DecisionDocument, IsReadBack) {
  for (int i = 0; i <= 8; ++i) {
    LayoutDecision decision;
    decision.kind = static_cast<DecisionKind>(i);
    decision.difference = static_cast<LayoutDifference>(i);
    decision.headPosition = static_cast<HeadPosition>(i);
    decision.from = static_cast<FramingType>(std::min(i, 7));
    decision.timer = "x";
    decision.waitMs = 3;
    const std::string document = decisionDocument(5, decision);
    const std::optional<LayoutDecision> read = readDecision(document);
    ASSERT_TRUE(read) << document;
    EXPECT_EQ(decisionDocument(5, *read), document);
  }
  for (const char* const text : {"", "3", "{}", R"({"kind":"whim"})", R"({"kind":"reset","streamid":"x"})"}) {
    EXPECT_FALSE(readDecision(text)) << text;
  }
}

struct CountingListener final : DecisionListener {
  void onDecision(const LayoutDecision& /*decision*/) override { ++count; }
  int count = 0;
};

TEST(Decisions, GoOutWhileTheirPropertyIsOn) {
  RoomService room;
  room.start();
  CountingListener listener;
  room.service->setDecisionListener(&listener);
  const auto published = [&room](const char* value) {
    room.set("vendor.fyndebug.decisions", value);
    room.send("/ctl", "config-change");
    room.send("/ctl", "reset-layouts");
    room.heard();
    room.send(scene());
    Lines kinds;
    for (const std::string& line : room.heard()) {
      if (line.rfind("/PRBDecisions ", 0) == 0) {
        kinds.push_back(nlohmann::json::parse(line.substr(line.find(' ')))["kind"]);
      }
    }
    return kinds;
  };
  EXPECT_EQ(published("0"), Lines{});
  EXPECT_EQ(listener.count, 2);
  EXPECT_EQ(published("1"), (Lines{"pending", "adopted"}));
  EXPECT_EQ(listener.count, 5) << "with the reset of the layouts";
  EXPECT_EQ(published("0"), Lines{});

  RoomService second;
  second.set("vendor.fyndebug.decisions", "1");
  second.start();
  second.send(scene());
  const Lines topics = second.heardTopics();
  EXPECT_EQ(std::count(topics.begin(), topics.end(), "/PRBDecisions"), 2) << "on from the start";
}

}  // namespace
}  // namespace fyn::productionrules::testing
