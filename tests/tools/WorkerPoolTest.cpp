#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/tools/RunPrb.h"
#include "tools/base/WorkerPool.h"

namespace fyn::productionrules::testing {
namespace {

void waitUntil(const std::function<bool()>& isSo) {
  while (!isSo()) {
    std::this_thread::yield();
  }
}

// Task 2 fails first and so gives up 3, but not 1, which fails after that.
TEST(WorkerPool, TellsTheFaultOfTheFirstTaskThatFails) {
  std::atomic<std::size_t> step{0};
  const auto task = [&](std::size_t index, const GivenUp& isGivenUp) {
    if (index == 3) {
      step = 1;
      waitUntil(isGivenUp);
      step = 2;
    } else if (index > 0) {
      waitUntil([&] { return step == 3 - index; });
      throw UsageError(std::to_string(index));
    }
  };
  std::vector<std::size_t> ended;
  const auto done = [&ended](std::size_t index) { ended.push_back(index); };
  EXPECT_EQ(usageFaultOf([&] { runInWorkers(4, task, done, {4, {}}); }), "1");
  EXPECT_EQ(ended, std::vector<std::size_t>{0});
}

TEST(WorkerPool, AnInterruptionGivesUpWhatRuns) {
  std::vector<std::size_t> ended;
  const auto task = [](std::size_t index, const GivenUp& isGivenUp) {
    waitUntil([&] { return index == 0 || isGivenUp(); });
  };
  EXPECT_FALSE(runInWorkers(1000, task, [&ended](std::size_t index) { ended.push_back(index); },
                            {2, [&ended] { return !ended.empty(); }}));
  EXPECT_EQ(ended, std::vector<std::size_t>{0});
}

}  // namespace
}  // namespace fyn::productionrules::testing
