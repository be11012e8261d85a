#pragma once

#include <functional>
#include <string>
#include <utility>

#include "layouts/cycle/LayoutDecision.h"

namespace fyn::productionrules {

/** Publishes every decision as a document, and hands it on. */
class DecisionPublisher final : public DecisionListener {
 public:
  using Publish = std::function<void(const std::string& document)>;

  explicit DecisionPublisher(Publish publish) : mPublish(std::move(publish)) {}

  /** Told every decision too, before it is published; null for nobody. */
  void setNext(DecisionListener* next) { mNext = next; }
  DecisionListener* next() const { return mNext; }

  void onDecision(const LayoutDecision& decision) override;

 private:
  const Publish mPublish;
  DecisionListener* mNext = nullptr;
};

}  // namespace fyn::productionrules
