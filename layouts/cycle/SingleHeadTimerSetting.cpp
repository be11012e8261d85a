#include "layouts/cycle/SingleHeadTimerSetting.h"

namespace fyn::productionrules {

WaitField SingleHeadTimerSetting::singleHeadWait(HeadPosition position) {
  switch (position) {
    case HeadPosition::HEAD_ON_EDGE:
      return waitOf(&SingleHeadTimerSetting::onFrameEdgeTimer);
    case HeadPosition::HEAD_OFF_CENTER:
      return waitOf(&SingleHeadTimerSetting::offCenterTimer);
    case HeadPosition::HEAD_OUTSIDE:
      return waitOf(&SingleHeadTimerSetting::outsideFrameTimer);
    default:
      return nullptr;
  }
}

}  // namespace fyn::productionrules
