// Replays on threads of one process, which share no state: each effect is that of the replay alone.
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>
#include <vector>

#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {
namespace {

/** Arguments of replays that differ in mode, role, cameras, configuration and log level. */
std::vector<std::vector<std::string>> replays() {
  std::vector<std::vector<std::string>> all;
  for (const char* const name : {"camera_360", "configuration_reload", "people_primary_with_three_cameras",
                                 "speaker_recovery_unsteady", "multistream_sticky", "secondary_role",
                                 "standalone_with_two_cameras", "provider_dies_twice"}) {
    const std::string recording =
        std::string(PR_SOURCE_DIR "/tests/replay/cases/") + name + "/recording.jsonl";
    all.push_back({"replay", recording, "--decisions", "--log", all.size() % 2 == 0 ? "I" : "W", "--dump",
                   ::testing::TempDir() + "parallel_" + name + ".dump", "--property",
                   "vendor.fyndebug.timer=" + std::to_string(all.size())});
  }
  return all;
}

TEST(ParallelReplay, EqualsTheReplayAlone) {
  const std::vector<std::vector<std::string>> all = replays();
  std::vector<std::string> alone;
  for (const std::vector<std::string>& arguments : all) {
    const PrbRun run = runPrbWith(arguments);
    ASSERT_EQ(run.status, 0) << run.err;
    alone.push_back(run.out);
  }

  constexpr int kRounds = 3;
  std::vector<std::string> together(all.size());
  for (int round = 0; round < kRounds; ++round) {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < all.size(); ++i) {
      threads.emplace_back([&, i] { together[i] = runPrbWith(all[i]).out; });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
      EXPECT_EQ(together[i], alone[i]) << all[i][1];
      std::filesystem::remove(all[i][6]);
    }
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
