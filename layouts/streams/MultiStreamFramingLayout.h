#pragma once

#include <memory>
#include <vector>

#include "layouts/streams/MultiStreamGroupFramingLayout.h"
#include "layouts/streams/MultiStreamPeopleFramingLayout.h"

namespace fyn::productionrules {

/**
 * Several output streams at once: stream 0 shows everybody, each further stream is a virtual camera that
 * stays with one person or one group of neighbours. Every stream decides for itself, so a change in one never
 * cuts, restarts or delays another.
 *
 * The layouts of stream 0 stand in for the engine where one layout is asked for: debug text, scene
 * rectangles, `getLayoutPtr`.
 */
class MultiStreamFramingLayout : public BaseLayout {
 public:
  /** More further streams than this are not made. */
  static constexpr unsigned kMaxStreams = 64;

  MultiStreamFramingLayout();
  ~MultiStreamFramingLayout() override;

  const char* getTag() const override;

  /**
   * Takes the setting as its own and fills the waits of the streams from the configuration: those of group
   * framing for stream 0, those of people framing for the others. A setting of either kind is used as it is.
   */
  void setTimerSetting(std::shared_ptr<BaseTimerSetting> setting) override;

  bool applyingLayout(const std::shared_ptr<MLData>& mlData) override;
  bool updateLayoutFraming() override;

  /** Stream 0 takes the layout, unless it names another stream's id. */
  bool applySecondaryLayout(const std::shared_ptr<Layout>& layout) override;

  void updatePeopleMap(const std::shared_ptr<MLData>& mlData) override;
  void resetLayouts() override;
  bool isThereATimerRunning() const override;

  /** The whole cycle for one vision result, in all streams; true when the layouts are to be published. */
  bool process(const std::shared_ptr<MLData>& mlData) override;
  std::shared_ptr<MLData> findPresent(const std::shared_ptr<MLData>& mlData) override;

  /** Stream 0 first. */
  std::vector<std::shared_ptr<Layout>> getFinalLayoutPtrs() const override;
  std::vector<std::shared_ptr<Layout>> getNextLayoutPtrs() const override;

  /** The number of further streams, kMaxStreams at the most; takes effect with the next vision result. */
  void setMaxLayouts(unsigned count) override;

  void setDecisionListener(DecisionListener* listener) override;

 private:
  std::vector<unsigned> streamIds() const;
  void mirrorFirstStream();

  MultiStreamGroupFramingLayout mGroup;
  MultiStreamPeopleFramingLayout mPeople;
  /** The ids of the streams of `mPeople`. */
  std::vector<unsigned> mStreamIds;
};

}  // namespace fyn::productionrules
