#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include "layouts/cycle/LayoutDecision.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules {

/** Writes one JSON line per effect of a replay. */
class EffectWriter final : public ReplayObserver, public DecisionListener {
 public:
  /** `now` gives the time of an effect, in milliseconds from the start of the recording. */
  EffectWriter(std::ostream& output, std::function<std::int64_t()> now);

  void onPublish(const std::string& topic, const std::string& payload) override;
  void onScene(const std::string& json, bool delivered) override;
  void onSubscribe(const std::string& topic) override;
  void onAdvertise(const std::string& topic) override;
  void onLog(LogPriority priority, const char* tag, const char* words) override;
  void onDecision(const LayoutDecision& decision) override;

 private:
  template <typename WriteMembers>
  void write(WriteMembers&& writeMembers);

  std::ostream& mOutput;
  const std::function<std::int64_t()> mNow;
};

}  // namespace fyn::productionrules
