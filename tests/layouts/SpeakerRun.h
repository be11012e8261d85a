#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "config/PrConfig.h"
#include "layouts/speaker/SpeakerFramingLayout.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {

/**
 * Drives a speaker engine as its tracking mode does, on a virtual clock: one vision result every `stepMs`,
 * from the default configuration and one camera of `image` pixels. Keeps every decision.
 */
class SpeakerRun : public DecisionListener {
 public:
  explicit SpeakerRun(Dimension image = kDefaultImageSize, std::uint64_t stepMs = 100);
  ~SpeakerRun() override;

  /** Changes the configuration for the rest of the run. */
  SpeakerRun& with(const std::function<void(PrConfig&)>& change);

  template <typename Engine>
  SpeakerRun& engine() {
    mEngine = std::make_shared<Engine>();
    prepareEngine();
    return *this;
  }

  /** Gives the engine the scene once; whether a picture went out. The clock moves on afterwards. */
  bool see(const Scene& scene);

  /** The same scene for `ms` milliseconds; how many pictures went out. */
  int watch(const Scene& scene, std::uint64_t ms);

  std::uint64_t now() const { return environment.time.now(); }
  BaseLayout& layouts() { return *mEngine; }
  const Layout& current() const { return *mEngine->getLayoutPtr(); }

  /** Type and people of the picture, "SUBSET_SPEAKER 1 2"; "none" without a layout. */
  std::string picture() const;

  /** The pictures adopted since the last call, each as "2000 HEAD 1": when, what, who. */
  std::vector<std::string> takePictures();

  /** All decisions since the last call. */
  std::vector<LayoutDecision> takeDecisions();

  void onDecision(const LayoutDecision& decision) override;

  TestEnvironment environment;

 private:
  void prepareEngine();

  const std::uint64_t mStepMs;
  std::shared_ptr<BaseLayout> mEngine;
  std::vector<LayoutDecision> mDecisions;
  std::vector<std::string> mPictures;
};

}  // namespace fyn::productionrules::testing
