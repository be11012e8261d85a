// A real room through the whole service, judged by `prb report`: with the waits no picture goes back to what
// it was, who is in a frame is seen whole, and who speaks is shown. Tracks and turns were recorded apart,
// that these people say those turns is this test's invention. They are no part of the sources; without them
// the test is skipped.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "config/ConfigKeys.h"
#include "tests/testing/Folders.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {
namespace {

using Words = std::vector<std::string>;

std::string dataFile(const std::string& name) {
  return sourceFolder() + "/../shared/data/" + name + ".csv";
}

Words operator+(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

/** What `prb report` measures of a recording that `prb import` makes. */
nlohmann::json metricsOf(const Words& import, const Words& options) {
  const PrbRun recording = runPrbWith(Words{"import"} + import);
  EXPECT_EQ(recording.status, 0) << recording.err;
  const PrbRun run = runPrbWith(Words{"report", "-", "--json", "-"} + options, recording.out);
  EXPECT_EQ(run.status, 0) << run.err;
  return nlohmann::json::parse(run.out).at("overall").at("metrics");
}

std::string allWaitsZero() {
  std::string text = "persist.tvpr.realhead.counter.max=0\n";
  for (const ConfigKey& row : kConfigKeys) {
    const std::string key(row.key);
    if (key.rfind("persist.pf.fdtimers.", 0) == 0 ||
        key.rfind("persist.fdtimers.layoutchange.head", 0) == 0) {
      text += key + "=0\n";
    }
  }
  return text;
}

class RealRoomReplay : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const std::string& file : {front, side, turns}) {
      if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << "skipped: " << file << " is not there";
      }
    }
  }

  const std::string front = dataFile("tracks_campus_ip2");
  const std::string side = dataFile("tracks_campus_ip5");
  const std::string turns = dataFile("turns_ami_is1008a");
  const ScratchFolder folder;
};

struct RoomCase {
  const char* name;
  Words views;
  Words options;
  /** Per cent of the time of people in frames that they must be seen whole in them. */
  double whole;
};

TEST_F(RealRoomReplay, NothingFlickersAndWhoIsFramedIsSeenWhole) {
  const Words zero{"--config", folder.write("zero.conf", allWaitsZero())};
  const Words people{"--property", "vendor.talkertracking.flag=4"};
  const RoomCase cases[] = {
      {"front", {front}, people, 99},
      {"side", {side}, people, 99},
      {"front, neighbours apart", {front}, people + Words{"--property", "persist.feature.newpf=0"}, 99},
      // Its group frame names those too whom only the other camera sees.
      {"both cameras", {front, side}, people + Words{"--property", "vendor.fynpilot.fynOperatingMode=1"}, 50},
  };
  for (const RoomCase& each : cases) {
    const nlohmann::json calm = metricsOf(each.views, each.options);
    EXPECT_EQ(calm.at("flickers_per_minute"), 0) << each.name;
    EXPECT_GE(calm.at("subject_in_view_percent"), each.whole) << each.name;
    EXPECT_GT(metricsOf(each.views, each.options + zero).at("changes_per_minute").get<double>(),
              2 * calm.at("changes_per_minute").get<double>())
        << each.name;
  }
}

struct TurnsCase {
  const char* settings;
  /** Per cent of the speaking time, at the least, and changes a minute, at the most: a little beside what was
   * measured. */
  double framed;
  double changes;
};

TEST_F(RealRoomReplay, WhoSpeaksIsShown) {
  const TurnsCase cases[] = {
      {"", 92, 5.5},
      {"persist.feature.sf.usessb=0\n", 57, 9},
      {"persist.feature.speakerframing.holdlayout=0\n", 76, 5.5},
      {"persist.sf.fdtimers.layoutchange.framespeaker=2000\n", 60, 4.5},
  };
  for (const TurnsCase& each : cases) {
    const nlohmann::json metrics =
        metricsOf({front, "--turns", turns}, {"--property", "vendor.talkertracking.flag=2", "--config",
                                              folder.write("speaker.conf", each.settings)});
    EXPECT_GE(metrics.at("speaker_framed_percent"), each.framed) << each.settings;
    EXPECT_LE(metrics.at("changes_per_minute"), each.changes) << each.settings;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
