#pragma once

#include <functional>
#include <string>
#include <utility>

#include "layouts/cycle/LayoutDecision.h"
#include "tools/replay/ReplayObserver.h"

namespace fyn::productionrules::testing {

/**
 * The effects of a replay as a person reads them: one short line per effect, times in seconds. Scenes show
 * their number, layout, transition and, per frame, the part of the camera picture and its place in the
 * output.
 */
class ReadableEffects final : public ReplayObserver, public DecisionListener {
 public:
  /** `now` gives the milliseconds from the start of the recording. */
  explicit ReadableEffects(std::function<std::int64_t()> now) : mNow(std::move(now)) {}

  void onPublish(const std::string& topic, const std::string& payload) override;
  void onScene(const std::string& json, bool delivered) override;
  void onSubscribe(const std::string& topic) override;
  void onAdvertise(const std::string& topic) override;
  void onLog(LogPriority priority, const char* tag, const char* text) override;
  void onDecision(const LayoutDecision& decision) override;

  const std::string& text() const { return mText; }

 private:
  void line(const std::string& text);
  void call(const char* name, const std::string& topic);

  std::function<std::int64_t()> mNow;
  std::string mText;
  /** The latest line of subscriptions or advertisements, and which of the two it holds. */
  std::string mCalls;
  std::string mCallName;
};

}  // namespace fyn::productionrules::testing
