#pragma once

#include <memory>
#include <string>
#include <vector>

#include "layouts/cycle/BaseLayout.h"
#include "modes/BaseLayoutNotifier.h"

namespace fyn::productionrules::testing {

/** An engine that notes what it is asked and answers what the test has set. */
class FakeEngine final : public BaseLayout {
 public:
  using BaseLayout::mState;

  void updatePeopleMap(const std::shared_ptr<MLData>& mlData) override {
    calls += "map ";
    BaseLayout::updatePeopleMap(mlData);
  }
  bool applyingLayout(const std::shared_ptr<MLData>& /*mlData*/) override {
    return answer("apply ", applies);
  }
  bool updateFeedPriorityOfFrame() override { return answer("feed ", feedChanges); }
  bool updateLayoutFraming() override { return answer("frame ", reframes); }
  bool isThereATimerRunning() const override { return timerRuns; }
  bool applySecondaryLayout(const std::shared_ptr<Layout>& layout) override {
    secondary.push_back(layout);
    return acceptsSecondary;
  }
  void setTimerSetting(std::shared_ptr<BaseTimerSetting> setting) override {
    calls += "setting ";
    BaseLayout::setTimerSetting(std::move(setting));
  }
  /** None, which tells them from the waiting ones. */
  std::vector<std::shared_ptr<Layout>> getFinalLayoutPtrs() const override { return {}; }

  bool applies = false;
  bool feedChanges = false;
  bool reframes = false;
  bool timerRuns = false;
  bool acceptsSecondary = true;
  std::string calls;
  std::vector<std::shared_ptr<Layout>> secondary;

 private:
  bool answer(const char* call, bool result) {
    calls += call;
    return result;
  }
};

/** Notes what is sent, one text per call. */
class FakeNotifier final : public BaseLayoutNotifier {
 public:
  void sendLayout(const Layout& layout, const FramingMode& mode, bool debug) override {
    note("layout " + layoutToString(layout.layoutType), mode, debug);
  }
  void sendLayouts(const std::vector<Layout>& layouts, const FramingMode& mode, bool debug) override {
    note("layouts " + std::to_string(layouts.size()), mode, debug);
    lastLayouts = layouts;
  }
  void sendDebugTimerInfo(const std::vector<std::shared_ptr<Layout>>& finalLayouts,
                          const std::vector<std::shared_ptr<Layout>>& nextLayouts) const override {
    sent.push_back("timers " + std::to_string(finalLayouts.size()) + " " +
                   std::to_string(nextLayouts.size()));
  }
  void sendPeopleCount(unsigned count, unsigned minHeadHeight) const override {
    sent.push_back("people " + std::to_string(count) + " " + std::to_string(minHeadHeight));
  }

  std::vector<std::string> take() { return std::exchange(sent, {}); }

  mutable std::vector<std::string> sent;
  /** What the latest `sendLayouts` was given. */
  std::vector<Layout> lastLayouts;

 private:
  void note(const std::string& what, FramingMode mode, bool debug) {
    sent.push_back(what + " " + framingModeToString(mode) + (debug ? " debug" : ""));
  }
};

}  // namespace fyn::productionrules::testing
