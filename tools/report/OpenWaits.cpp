#include "tools/report/OpenWaits.h"

#include <utility>

namespace fyn::productionrules {

namespace {

constexpr int kWholeLayout = -1;

}  // namespace

void OpenWaits::take(std::int64_t t, const LayoutDecision& decision) {
  const std::pair<int, int> layout{decision.streamId, kWholeLayout};
  const std::pair<int, int> frame{decision.streamId, decision.frameIndex};
  switch (decision.kind) {
    case DecisionKind::Pending:
      return begin(layout, {t, decision});
    case DecisionKind::ReframeWait:
      return begin(frame, {t, decision});
    case DecisionKind::Dropped:
      return end(layout, WaitEnd::Dropped);
    case DecisionKind::ReframeCancelled:
      return end(frame, WaitEnd::Dropped);
    case DecisionKind::Reframed:
      return end(frame, WaitEnd::RanOut);
    case DecisionKind::Adopted:
      // With the layout its frames have gone.
      end(layout, WaitEnd::RanOut);
      return endAll(decision.streamId);
    case DecisionKind::Secondary:
    case DecisionKind::Reset:
      return endAll(decision.streamId);
    case DecisionKind::FeedPriority:
      return;
  }
}

void OpenWaits::begin(std::pair<int, int> place, OpenWait wait) {
  end(place, WaitEnd::Dropped);
  mRunning.emplace(place, std::move(wait));
}

void OpenWaits::end(std::pair<int, int> place, WaitEnd how) {
  const auto found = mRunning.find(place);
  if (found != mRunning.end()) {
    const OpenWait ended = std::move(found->second);
    mRunning.erase(found);
    mOnEnd(ended, how);
  }
}

void OpenWaits::endAll(int stream) {
  for (auto next = mRunning.lower_bound({stream, kWholeLayout});
       next != mRunning.end() && next->first.first == stream;
       next = mRunning.lower_bound({stream, kWholeLayout})) {
    end(next->first, WaitEnd::Dropped);
  }
}

}  // namespace fyn::productionrules
