#pragma once

#include <memory>
#include <string>
#include <vector>

#include "config/PrConfig.h"
#include "layouts/cycle/BaseLayout.h"
#include "model/FynCamerasConfig.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {

using Lines = std::vector<std::string>;

/** An engine whose layouts a test may put in place. */
template <typename Engine>
struct OpenEngine : Engine {
  using Engine::mState;
};

/** A virtual clock and captured log, the default configuration and no cameras but the own one, camera 0. */
struct EngineEnvironment {
  explicit EngineEnvironment(int logLevel = 4) : environment(logLevel) {
    FynCamerasConfig::getMutable().fynCamId = 0;
    environment.log.take();
  }

  /** Milliseconds from the start of the test. */
  void at(std::uint64_t ms) { environment.time.advanceTo(ms); }

  TestEnvironment environment;
  PrConfig config;
};

inline std::shared_ptr<Layout> layoutOf(FramingType type, std::vector<Frame> frames = {}) {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  layout->frames = std::move(frames);
  return layout;
}

/** A frame as an engine leaves it: subject in the centre, no wait. */
inline Frame frameOf(FramingType type, const Rect& source, std::set<std::int64_t> ids = {}) {
  Frame frame;
  frame.frameType = type;
  frame.source = source;
  frame.heads = ids;
  frame.fynHeads = std::move(ids);
  frame.headPosition = HeadPosition::CENTER;
  return frame;
}

}  // namespace fyn::productionrules::testing
