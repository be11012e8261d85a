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
 * Drives a people engine as its tracking mode does: a virtual clock, the waits of the configuration, one
 * vision result every 100 ms. Keeps every decision, and describes pictures in one line.
 */
class PeopleRun : public DecisionListener {
 public:
  static constexpr std::uint64_t kStepMs = 100;

  /** A camera list of 1280 x 720 cameras; the first is the own one. */
  explicit PeopleRun(std::initializer_list<std::int32_t> cameras = {0});
  ~PeopleRun() override;

  /** Changes the configuration for the rest of the run. */
  PeopleRun& with(const std::function<void(PrConfig&)>& change);

  template <typename Engine>
  PeopleRun& engine() {
    mEngine = std::make_shared<Engine>();
    prepareEngine();
    return *this;
  }

  /** Gives the engine the scene once; whether a picture went out. */
  bool see(const Scene& scene);
  bool see(const std::shared_ptr<MLData>& data);

  /** The same scene for so long; how many pictures went out. */
  int watch(const Scene& scene, std::uint64_t ms);

  BaseLayout& layouts() { return *mEngine; }
  const Layout& current() const { return *mEngine->getLayoutPtr(); }

  /** Type and people of a picture, a tile per bracket: "PROXIMITY [1] [2 3]"; "none" without a layout. */
  std::string picture() const;

  /** The adopted pictures and camera moves so far as "1200 adopted HEAD", and forgets them. */
  std::vector<std::string> takeChanges();

  void onDecision(const LayoutDecision& decision) override;

  TestEnvironment environment;
  /** All decisions so far. */
  std::vector<LayoutDecision> decisions;

 private:
  void prepareEngine();

  std::shared_ptr<BaseLayout> mEngine;
  std::vector<std::string> mChanges;
};

}  // namespace fyn::productionrules::testing
