#include "service/DecisionPublisher.h"

#include "platform/Ticks.h"
#include "service/DecisionDocument.h"

namespace fyn::productionrules {

void DecisionPublisher::onDecision(const LayoutDecision& decision) {
  if (mNext != nullptr) {
    mNext->onDecision(decision);
  }
  mPublish(decisionDocument(GetTicks(), decision));
}

}  // namespace fyn::productionrules
