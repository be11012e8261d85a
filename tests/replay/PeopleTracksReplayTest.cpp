// The tracks of a real room through the whole service in people framing: with the waits no picture goes back
// to what it was and who is in a frame is seen whole. The tracks are not part of the sources; without them
// the test is skipped.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "config/ConfigKeys.h"
#include "tests/tools/RunPrb.h"
#include "tests/tools/TemporaryFolder.h"

namespace fyn::productionrules::testing {
namespace {

using Words = std::vector<std::string>;

std::string trackFile(const char* view) {
  return std::string(PR_SOURCE_DIR) + "/../shared/data/tracks_campus_" + view + ".csv";
}

/** What `prb report` measures of these views as cameras of one room, with further options. */
nlohmann::json metricsOf(const Words& views, const Words& options) {
  Words import{"import"};
  for (const std::string& view : views) {
    import.push_back(trackFile(view.c_str()));
  }
  const PrbRun recording = runPrbWith(import);
  EXPECT_EQ(recording.status, 0) << recording.err;
  Words report{"report", "-", "--json", "-", "--property", "vendor.talkertracking.flag=4"};
  report.insert(report.end(), options.begin(), options.end());
  const PrbRun run = runPrbWith(report, recording.out);
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

struct RoomCase {
  const char* name;
  Words views;
  Words options;
  /** Per cent of the time of people in frames that they must be seen whole in them. */
  double whole;
};

TEST(PeopleTracksReplay, NothingFlickersAndWhoIsFramedIsSeenWhole) {
  if (!std::filesystem::exists(trackFile("ip2")) || !std::filesystem::exists(trackFile("ip5"))) {
    GTEST_SKIP() << "skipped: the tracks are not there";
  }
  const TemporaryFolder folder;
  const std::string zero = folder.write("zero.conf", allWaitsZero());
  const RoomCase cases[] = {
      {"front", {"ip2"}, {}, 99},
      {"side", {"ip5"}, {}, 99},
      {"front, neighbours apart", {"ip2"}, {"--property", "persist.feature.newpf=0"}, 99},
      // Its group frame names those too whom only the other camera sees.
      {"both cameras", {"ip2", "ip5"}, {"--property", "vendor.fynpilot.fynOperatingMode=1"}, 50},
  };
  for (const RoomCase& each : cases) {
    const nlohmann::json calm = metricsOf(each.views, each.options);
    EXPECT_EQ(calm.at("flickers_per_minute"), 0) << each.name;
    EXPECT_GE(calm.at("subject_in_view_percent"), each.whole) << each.name;
    Words hasty = each.options;
    hasty.insert(hasty.end(), {"--config", zero});
    EXPECT_GT(metricsOf(each.views, hasty).at("layout_changes_per_minute").get<double>(),
              10 * calm.at("layout_changes_per_minute").get<double>())
        << each.name;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
