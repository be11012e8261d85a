#pragma once

#include <memory>
#include <vector>

#include "model/Layout.h"

namespace fyn::productionrules {

/** Where a tracking mode publishes what it has decided. */
class BaseLayoutNotifier {
 public:
  virtual ~BaseLayoutNotifier() = default;

  /** `debug` documents go to the debug topic only and do not count as scenes. */
  virtual void sendLayout(const Layout& layout, const FramingMode& mode, bool debug) = 0;
  virtual void sendLayouts(const std::vector<Layout>& layouts, const FramingMode& mode, bool debug) = 0;
  virtual void sendDebugTimerInfo(const std::vector<std::shared_ptr<Layout>>& finalLayouts,
                                  const std::vector<std::shared_ptr<Layout>>& nextLayouts) const = 0;

  /** `minHeadHeight`: height of the smallest head, in camera pixels. */
  virtual void sendPeopleCount(unsigned count, unsigned minHeadHeight) const = 0;
};

}  // namespace fyn::productionrules
