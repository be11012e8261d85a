// Services on threads of one process, which share no state: each effect is that of the service alone.
#include <gtest/gtest.h>

#include <thread>

#include "tests/testing/Folders.h"
#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {
namespace {

/** Arguments of replays that differ in mode, role, cameras, configuration, properties and log level; the
 * first two only in the configuration. */
std::vector<std::vector<std::string>> replays(const ScratchFolder& folder) {
  std::vector<std::vector<std::string>> all;
  for (const std::string name :
       {"people_who_cross", "people_who_cross", "camera_360", "configuration_reload",
        "people_primary_with_three_cameras", "speaker_recovery_unsteady", "multistream_sticky",
        "secondary_role", "standalone_with_two_cameras", "provider_dies_twice"}) {
    const std::size_t pair = all.size() / 2;
    const std::string number = std::to_string(all.size());
    const std::string configuration =
        folder.write(number + ".conf", "persist.fdtimers.headboundbox.outofframe=" + number + "000\n");
    all.push_back({"replay", sourceFolder() + "/tests/replay/cases/" + name + "/recording.jsonl",
                   "--decisions", "--log", pair % 2 == 0 ? "I" : "W", "--config", configuration, "--dump",
                   folder.file(number + ".dump"), "--force", "--property",
                   "vendor.fyndebug.timer=" + std::to_string(pair)});
  }
  return all;
}

TEST(ParallelReplay, EqualsTheReplayAlone) {
  const ScratchFolder folder;
  const std::vector<std::vector<std::string>> all = replays(folder);
  std::vector<std::string> alone;
  for (const std::vector<std::string>& arguments : all) {
    const PrbRun run = runPrbWith(arguments);
    ASSERT_EQ(run.status, 0) << run.err;
    alone.push_back(run.out);
  }
  ASSERT_NE(alone[0], alone[1]) << "the configuration has no effect";

  std::vector<std::string> together(all.size());
  for (int round = 0; round < 3; ++round) {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < all.size(); ++i) {
      threads.emplace_back([&, i] { together[i] = runPrbWith(all[i]).out; });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
      EXPECT_EQ(together[i], alone[i]) << all[i][1];
    }
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
