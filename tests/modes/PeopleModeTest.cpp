// The mode of people framing with its own engine: whom it passes on.
#include <gtest/gtest.h>

#include "config/PrConfig.h"
#include "model/FynCamerasConfig.h"
#include "modes/PeopleFramingMode.h"
#include "tests/modes/FakeEngine.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {
namespace {

struct PresenceCase {
  const char* what;
  bool steady;
  bool presence;
  /** Persons of two results 100 ms apart. */
  std::vector<std::int32_t> before;
  std::vector<std::int32_t> after;
  bool reset;
  unsigned known;
};

Scene people(const std::vector<std::int32_t>& ids) {
  Scene room = scene();
  for (const std::int32_t id : ids) {
    room.person(id).at(300 * id, 300);
  }
  return room;
}

TEST(PeopleMode, BridgesWhatTheDetectorMissesWhereItIsAskedTo) {
  const PresenceCase cases[] = {
      {"somebody missed", false, true, {1, 2}, {1}, false, 1},
      {"somebody missed, bridged", true, true, {1, 2}, {1}, false, 2},
      {"bridged by the pipeline itself", true, false, {1, 2}, {1}, false, 1},
      {"bridged until a reset", true, true, {1, 2}, {1}, true, 1},
      {"a newcomer", false, true, {1}, {1, 2}, false, 2},
      {"a newcomer who has to wait", true, true, {1}, {1, 2}, false, 1},
  };
  for (const PresenceCase& each : cases) {
    TestEnvironment environment;
    PrConfig config;
    config.steadyFramingEnabled = each.steady;
    config.presenceEnabled = each.presence;
    PrConfig::set(config);
    FynCamerasConfig::getMutable().fynCamId = 0;
    FakeNotifier notifier;
    PeopleFramingMode mode(notifier);
    mode.process(people(each.before).mlData());
    environment.time.advanceTo(environment.time.now() + 100);
    if (each.reset) {
      mode.resetLayouts();
    }
    mode.process(people(each.after).mlData());
    EXPECT_EQ(mode.getFramingLayout()->getPeopleCount(), each.known) << each.what;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
