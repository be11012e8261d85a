// A live bus as the page sees it.
#include <gtest/gtest.h>

#include "tests/view/NotedLines.h"
#include "tools/view/LiveRoom.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

/** A room whose clock the messages drive. */
class Room {
 public:
  Room() : mRoom(noted, [this] { return mNow; }) {}

  void send(std::int64_t t, const std::string& topic, const std::string& text) {
    mNow = t;
    mRoom.onMessage(topic, text);
  }

  NotedLines noted;

 private:
  std::int64_t mNow = 0;
  LiveRoom mRoom;
};

TEST(LiveRoom, ADecisionOfTheServiceIsShownInWords) {
  Room room;
  const std::string document =
      R"({"t":99,"streamid":1,"kind":"adopted","from":"HEAD","to":"GROUP","difference":"the kind of layout",)"
      R"("timer":"x","key":"a.key","waitMs":2000,"waitedMs":2033})";
  room.send(5, "/PRBDecisions", document);
  EXPECT_EQ(room.noted.lines.back().text,
            R"({"t":5,"decision":)" + document +
                R"(,"title":"new picture HEAD -> GROUP",)"
                R"("sentence":"stream 1: new picture HEAD -> GROUP, the difference is the kind of layout, )"
                R"~(after 2.0 s (a.key 2000 ms)"})~");
  room.send(6, "/PRBDecisions", R"({"kind":"whim"})");
  EXPECT_EQ(room.noted.lines.back().text, R"({"t":6,"topic":"/PRBDecisions","payload":{"kind":"whim"}})");
}

TEST(LiveRoom, HostileMessagesEndNothing) {
  Room room;
  std::int64_t t = 0;
  const std::string deep(200000, '[');
  for (const std::string& text : {std::string(), std::string("{"), std::string("\xff\xfe\n"), deep,
                                  std::string(2'000'000, 'x'), std::string(R"({"TrackingMode":7})"),
                                  std::string(R"({"kind":"adopted","streamid":1e300,"waitMs":-1e99})"),
                                  std::string(R"({"heads":7,"streams":{"TrackingMode":""}})")}) {
    for (const std::string_view topic : LiveRoom::kTopics) {
      room.send(++t, std::string(topic), text);
    }
    room.send(++t, "/ctl/tracking-mode", text);
  }
  for (const ViewLine& line : room.noted.lines) {
    EXPECT_LT(line.text.size(), 1'100'000U);
    EXPECT_EQ(line.text.find('\n'), std::string::npos);
    EXPECT_TRUE(json::accept(line.text) || line.text.size() > 100000) << line.text.substr(0, 200);
  }
  EXPECT_EQ(room.noted.with("2000000 bytes").size(), LiveRoom::kTopics.size() + 1);
}

}  // namespace
}  // namespace fyn::productionrules::testing
