#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/testing/SceneBuilder.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/MeasuredMeeting.h"
#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

/** A meeting of a device of its own: ten vision results a second that show who is there. */
class Meeting {
 public:
  explicit Meeting(const char* mode) {
    add({{"t", 0}, {"property", {{"vendor.talkertracking.flag", mode}}}});
  }

  /** What is seen until the second `until`. */
  Meeting& see(const Scene& room, int until) {
    for (; mTime < until * 1000; mTime += 100) {
      add({{"t", mTime}, {"topic", "/ICDOut"}, {"payload", room.json()}});
    }
    return *this;
  }

  /** Who really is there from now on: heads of 100 x 120 pixels around these middles. */
  Meeting& truth(const std::vector<std::pair<int, int>>& idsAndMiddles) {
    json heads = json::array();
    for (const auto& [id, x] : idsAndMiddles) {
      heads.push_back({{"id", id},
                       {"fynCamId", 0},
                       {"bbox", {{"left", x - 50}, {"top", 240}, {"right", x + 50}, {"bottom", 360}}},
                       {"speaks", false}});
    }
    add({{"t", mTime}, {"truth", heads}});
    return *this;
  }

  Meeting& configure(const json& values) {
    add({{"t", mTime}, {"config", values}});
    return *this;
  }

  const std::string& text() const { return mText; }

 private:
  void add(const json& line) { mText += line.dump() + "\n"; }

  int mTime = 0;
  std::string mText;
};

/** Persons 1, 2, ... at these places, one of whom may speak. */
Scene at(std::initializer_list<int> places, int speaker = 0) {
  Scene room = scene();
  int id = 0;
  for (const int x : places) {
    ++id;
    room.person(id).at(x, 300).speaking(id == speaker);
  }
  return room;
}

json ask(const std::string& recording, std::vector<std::string> arguments) {
  const ScratchFolder folder;
  arguments.insert(arguments.begin(), {"why", folder.write("meeting.jsonl", recording), "--json", "-"});
  const PrbRun run = runPrbWith(arguments);
  EXPECT_EQ(run.status, 0) << run.err;
  return json::parse(run.out, nullptr, false);
}

/** The one line that a supporter would give on the telephone. */
std::string inShort(const json& answer) {
  std::string text;
  if (answer.contains("change")) {
    text = "changed by " + answer.at("change").value("key", "a rule");
  }
  for (const json& person : answer.at("persons")) {
    text += (text.empty() ? "" : ", ") + std::to_string(person.at("id").get<int>()) + " " +
            person.at("fate").get<std::string>();
  }
  for (const json& wait : answer.at("waits")) {
    text += "; " + wait.value("key", "") + " of " + wait.at("waitMs").dump();
  }
  if (answer.at("searched") == true) {
    const json& remedies = answer.at("remedies");
    text += remedies.empty()
                ? "; nothing helps"
                : "; " + remedies[0].at("key").get<std::string>() + "=" + remedies[0].at("to").dump();
  }
  return text;
}

struct Complaint {
  const char* what;
  Meeting meeting;
  std::vector<std::string> question;
  const char* answer;
};

TEST(Why, FindsTheCauseOfComplaintsWhoseCauseIsKnown) {
  const Complaint complaints[] = {
      {"I came in, and for long nobody saw me",
       Meeting("1").see(at({300}), 10).see(at({300, 1100}), 30),
       {"--at", "12.05", "--person", "2"},
       "2 offScreen; persist.fdtimers.layoutchange.rmtoother of 4000; "
       "persist.fdtimers.layoutchange.rmtoother=2000"},
      {"It takes a minute in our room",
       Meeting("1")
           .configure({{"persist.fdtimers.layoutchange.rmtoother", "60000"}})
           .see(at({300}), 10)
           .see(at({300, 1100}), 30),
       {"--at", "25.05"},
       "2 offScreen; persist.fdtimers.layoutchange.rmtoother of 60000; "
       "persist.fdtimers.layoutchange.rmtoother=15000"},
      {"Would it with the defaults",
       Meeting("1")
           .configure({{"persist.fdtimers.layoutchange.rmtoother", "60000"}})
           .see(at({300}), 10)
           .see(at({300, 1100}), 30),
       {"--at", "12.05", "--person", "2", "--config", "/dev/null"},
       "2 offScreen; persist.fdtimers.layoutchange.rmtoother of 4000; "
       "persist.fdtimers.layoutchange.rmtoother=2000"},
      {"I moved my chair and was gone",
       Meeting("1").see(at({300, 600}), 10).see(at({300, 1150}), 30),
       {"--at", "11.05", "--person", "2"},
       "2 offScreen; persist.fdtimers.groupframe.outside of 2000; persist.fdtimers.groupframe.outside=1000"},
      {"A tile for me came late",
       Meeting("4").see(at({200, 640}), 10).see(at({200, 640, 1100}), 20),
       {"--at", "12.05", "--person", "3"},
       "3 offScreen; persist.fdtimers.layoutchange.headcountchange of 4000; "
       "persist.fdtimers.layoutchange.headcountchange=2000"},
      {"I turned away, and the picture jumped",
       Meeting("1")
           .configure({{"persist.fdtimers.layoutchange.gftoother", "2000"}})
           .see(at({300, 1100}), 10)
           .see(at({300}), 14)
           .see(at({300, 1100}), 30),
       {"--at", "12"},
       "changed by persist.fdtimers.layoutchange.gftoother; persist.fdtimers.layoutchange.gftoother=4000"},
      {"It follows me when I lean over",
       Meeting("1").see(at({300}), 10).see(at({500}), 30),
       {"--at", "20", "--change"},
       "changed by persist.fdtimers.headbuffer.onedge; persist.fdtimers.headbuffer.onedge=11100"},
      {"The tiles jump when somebody gets up",
       Meeting("4").see(at({200, 640}), 10).see(at({200}), 20).see(at({200, 640}), 40),
       {"--at", "11.5"},
       "changed by persist.fdtimers.layoutchange.headcountchange; "
       "persist.fdtimers.layoutchange.headcountchange=9100"},
      {"I spoke and was not shown",
       Meeting("2")
           .configure({{"persist.sf.fdtimers.layoutchange.framespeaker", "3000"}})
           .see(at({300, 1100}, 1), 10)
           .see(at({300, 1100}, 2), 25),
       {"--at", "12.05", "--person", "2"},
       "2 offScreen; persist.sf.fdtimers.layoutchange.framespeaker of 2700; "
       "persist.sf.fdtimers.layoutchange.framespeaker=2000"},
      {"I listen, and am never shown",
       Meeting("2").see(at({300, 1100}, 1), 10),
       {"--at", "5", "--person", "2"},
       "2 offScreen; nothing helps"},
      {"I sat there all the time",
       Meeting("1").truth({{1, 300}, {2, 1100}}).see(at({300}), 20),
       {"--at", "15", "--person", "2"},
       "2 notDetected"},
      {"Where was I before I came in",
       Meeting("1").see(at({300}), 10).see(at({300, 1100}), 20),
       {"--at", "5", "--person", "2"},
       "2 notThere"},
      {"I was not in the picture, says somebody who was",
       Meeting("1").see(at({300, 1100}), 10),
       {"--at", "5", "--person", "2"},
       "2 shown"},
      {"I was not there and complain",
       Meeting("1").see(at({300}), 10),
       {"--at", "5", "--person", "7"},
       "7 unknown"},
      {"The empty room stays too long",
       Meeting("1").see(scene(), 5).see(at({1100}), 20),
       {"--at", "0:07.05"},
       "; persist.fdtimers.layoutchange.rmtoother of 4000"},
  };
  for (const Complaint& complaint : complaints) {
    EXPECT_EQ(inShort(ask(complaint.meeting.text(), complaint.question)), complaint.answer) << complaint.what;
  }
}

// A secondary device shows what its primary sends, whatever its own settings are.
TEST(Why, SaysWhereNoSettingHelps) {
  MeasuredMeeting recording;
  recording.show(0, {0, 0, 640, 360});
  for (int t = 0; t <= 10000; t += 1000) {
    recording.see(t, scene().person(1).camera(1).at(1100, 600));
  }
  EXPECT_EQ(inShort(ask(recording.text(), {"--at", "5"})), "1 offScreen; nothing helps");
}

}  // namespace
}  // namespace fyn::productionrules::testing
