#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "modes/BaseLayoutNotifier.h"
#include "output/JsonLayoutBuilder.h"

namespace fyn::productionrules {

/** Turns decisions into JSON texts and hands each to the callback for its kind. A missing callback is
 * tolerated. A host may derive its own from it. */
class JsonLayoutNotifier : public BaseLayoutNotifier {
 public:
  using JsonCallback = std::function<void(const std::string& json, bool debug)>;
  using SecondaryCallback = std::function<void(const std::string& json, int camId)>;
  using TextCallback = std::function<void(const std::string& json)>;

  void setJsonCallback(JsonCallback callback) { mJsonCallbackFunP = std::move(callback); }
  void setJsonSecondaryCallback(SecondaryCallback callback) {
    mJsonSecondaryCallbackFunP = std::move(callback);
  }
  void setDebugTimerCallbackFuncP(TextCallback callback) { mDebugTimerCallbackFuncP = std::move(callback); }
  void setPeopleCountCallbackFuncP(TextCallback callback) { mPeopleCountCallbackFuncP = std::move(callback); }

  void sendLayout(const Layout& layout, const FramingMode& mode, bool debug) override;
  void sendLayouts(const std::vector<Layout>& layouts, const FramingMode& mode, bool debug) override;
  void sendDebugTimerInfo(const std::vector<std::shared_ptr<Layout>>& finalLayouts,
                          const std::vector<std::shared_ptr<Layout>>& nextLayouts) const override;
  void sendPeopleCount(unsigned count, unsigned minHeadHeight) const override;

 private:
  void sendSecondaryLayouts(const std::vector<Layout>& layouts, bool isPrimary, bool debug);

  JsonCallback mJsonCallbackFunP;
  SecondaryCallback mJsonSecondaryCallbackFunP;
  TextCallback mDebugTimerCallbackFuncP;
  TextCallback mPeopleCountCallbackFuncP;
  JsonLayoutBuilder mBuilder;
  /** Scenes sent so far; debug documents do not count. */
  std::uint32_t mSceneCounter = 0;
};

}  // namespace fyn::productionrules
