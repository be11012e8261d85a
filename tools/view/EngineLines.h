#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "layouts/cycle/LayoutDecision.h"
#include "service/ProductionRuleIPCService.h"
#include "tools/view/ViewLine.h"

namespace fyn::productionrules {

/** Writes what the engine of a service decides and holds: decisions, waits, the state of its frames. */
class EngineLines final : public DecisionListener {
 public:
  /** `now` gives the time of a line. `sink` must outlive this. */
  EngineLines(LineSink& sink, std::function<std::int64_t()> now) : mSink(sink), mNow(std::move(now)) {}

  void onDecision(const LayoutDecision& decision) override;

  /** Writes waits and frames where they have changed since the last call. */
  void look(ProductionRuleIPCService& service);

 private:
  using Layouts = std::vector<std::shared_ptr<Layout>>;

  void writeWaits(const Layouts& current, const Layouts& next);
  void writeFrames(const Layouts& current);

  LineSink& mSink;
  const std::function<std::int64_t()> mNow;
  /** All that a wait consists of, so that equal lists mean equal waits. */
  std::vector<std::int64_t> mWaits;
  std::string mFrames;
};

}  // namespace fyn::productionrules
