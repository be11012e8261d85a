#include "layouts/cycle/LayoutDecision.h"

#include <array>

#include "config/ConfigKeys.h"

namespace fyn::productionrules {

const char* decisionKindText(DecisionKind kind) {
  static constexpr std::array<const char*, 9> kTexts{"pending",      "dropped",          "adopted",
                                                     "reframeWait",  "reframeCancelled", "reframed",
                                                     "feedPriority", "secondary",        "reset"};
  const auto index = static_cast<std::size_t>(kind);
  return index < kTexts.size() ? kTexts[index] : "";
}

std::string reasonText(const LayoutDecision& decision) {
  if (decision.reductionMs == 0) {
    return decision.reason;
  }
  return decision.reason + (decision.reason.empty() ? "" : "; ") + std::to_string(decision.configuredMs) +
         " ms, less " + std::to_string(decision.reductionMs) + " because people have left";
}

void nameWait(LayoutDecision& decision, const WaitSource* source) {
  if (source != nullptr) {
    decision.timer = source->name;
    decision.key = configKeyOf(source->tunable);
  }
}

}  // namespace fyn::productionrules
