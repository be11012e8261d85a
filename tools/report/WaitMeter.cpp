#include "tools/report/WaitMeter.h"

#include <set>
#include <string>

namespace fyn::productionrules {

void WaitMeter::last(std::int64_t time, std::int64_t offScreen) {
  std::set<std::string> keys;
  for (const auto& [place, wait] : mOpen.running()) {
    if (!wait.decision.key.empty() && keys.insert(wait.decision.key).second) {
      WaitFigures& figures = mMeasurement.waits[wait.decision.key];
      figures.runningMs += time;
      figures.offScreenMs += offScreen;
    }
  }
}

}  // namespace fyn::productionrules
