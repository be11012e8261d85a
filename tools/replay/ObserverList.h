#pragma once

#include <vector>

#include "layouts/cycle/LayoutDecision.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules {

/** Lets several observe one replay; each is told in the order in which it was added. */
class ObserverList final : public ReplayObserver, public DecisionListener {
 public:
  /** What is added must outlive the replay. */
  void add(ReplayObserver& effects, DecisionListener& decisions) {
    mEffects.push_back(&effects);
    mDecisions.push_back(&decisions);
  }

  void add(ReplayObserver& effects) { mEffects.push_back(&effects); }

  void onPublish(const std::string& topic, const std::string& payload) override {
    each([&](ReplayObserver& observer) { observer.onPublish(topic, payload); });
  }
  void onScene(const std::string& json, bool delivered) override {
    each([&](ReplayObserver& observer) { observer.onScene(json, delivered); });
  }
  void onSubscribe(const std::string& topic) override {
    each([&](ReplayObserver& observer) { observer.onSubscribe(topic); });
  }
  void onAdvertise(const std::string& topic) override {
    each([&](ReplayObserver& observer) { observer.onAdvertise(topic); });
  }
  void onLog(LogPriority priority, const char* tag, const char* text) override {
    each([&](ReplayObserver& observer) { observer.onLog(priority, tag, text); });
  }
  void onDecision(const LayoutDecision& decision) override {
    for (DecisionListener* const listener : mDecisions) {
      listener->onDecision(decision);
    }
  }

 private:
  template <typename Call>
  void each(const Call& call) {
    for (ReplayObserver* const observer : mEffects) {
      call(*observer);
    }
  }

  std::vector<ReplayObserver*> mEffects;
  std::vector<DecisionListener*> mDecisions;
};

}  // namespace fyn::productionrules
