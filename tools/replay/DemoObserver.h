#pragma once

#include <iosfwd>
#include <string>

#include "layouts/cycle/LayoutDecision.h"
#include "tools/replay/Replay.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules {

/** Prints a line per change of the picture and keeps the scene documents. */
class DemoObserver final : public ReplayObserver, public DecisionListener {
 public:
  DemoObserver(std::ostream& lines, std::ostream& scenes) : mLines(lines), mScenes(scenes) {}

  /** The replay that is observed; set before its first event. */
  void watch(Replay& replay) { mReplay = &replay; }

  void onPublish(const std::string& topic, const std::string& payload) override;
  void onDecision(const LayoutDecision& decision) override;

  /** One line on what has been played. */
  std::string summary();

 private:
  Replay* mReplay = nullptr;
  std::ostream& mLines;
  std::ostream& mScenes;
  unsigned mScenesWritten = 0;
  unsigned mLayoutChanges = 0;
  unsigned mReframes = 0;
};

}  // namespace fyn::productionrules
