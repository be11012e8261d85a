#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "config/PrConfig.h"
#include "layouts/cycle/BaseLayout.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {

/**
 * Drives an engine as its tracking mode does: a virtual clock, the waits of the configuration, one vision
 * result every `stepMs`. Keeps every decision, and describes pictures in one line.
 */
class EngineRun : public DecisionListener {
 public:
  static constexpr std::uint64_t kStepMs = 100;

  /** A camera list of 1280 x 720 cameras; the first is the own one. */
  explicit EngineRun(std::initializer_list<std::int32_t> cameras = {0});

  /** Changes the configuration for the rest of the run. */
  EngineRun& with(const std::function<void(PrConfig&)>& change);

  template <typename Engine>
  EngineRun& engine() {
    mEngine = std::make_shared<Engine>();
    prepareEngine();
    return *this;
  }

  /** Gives the engine the scene once; whether a picture went out. The clock moves on afterwards. */
  bool see(const Scene& scene);
  bool see(const std::shared_ptr<MLData>& data);

  /** The same scene for so long; how many pictures went out. */
  int watch(const Scene& scene, std::uint64_t ms);

  std::uint64_t now() const { return environment.time.now(); }
  BaseLayout& layouts() { return *mEngine; }
  const Layout& current() const { return *mEngine->getLayoutPtr(); }

  /** Type and people of the picture, a tile per bracket: "PROXIMITY [1] [2 3]"; "none" without a layout. */
  std::string picture() const;

  /** The streams beside stream 0: "1 HEAD [7], 2 ROOM". A GROUP frame, which names heads, goes without. */
  std::string streamPictures() const;

  /** The pictures adopted since the last call, each as "2000 HEAD [1]": when, what, who. */
  std::vector<std::string> takePictures();

  /** All decisions since the last call. */
  std::vector<LayoutDecision> takeDecisions();

  void onDecision(const LayoutDecision& decision) override { decisions.push_back(decision); }

  TestEnvironment environment;
  std::uint64_t stepMs = kStepMs;
  std::vector<LayoutDecision> decisions;

 private:
  void prepareEngine();

  std::shared_ptr<BaseLayout> mEngine;
  std::vector<std::string> mPictures;
};

/** A scene in one line: "1@200 2@900,400" is two persons by the centres of their heads; y is 300 unless
 * given. */
Scene peopleAt(const std::string& places);

}  // namespace fyn::productionrules::testing
