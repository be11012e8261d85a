#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "layouts/cycle/BaseTimerSetting.h"
#include "layouts/cycle/EngineState.h"
#include "layouts/cycle/LayoutDecision.h"
#include "model/MLData.h"

namespace fyn::productionrules {

/** What a frame shows, in camera pixels. */
struct RuleOfThirdsView {
  Rect source;
  /** The box of heads that it was made for, with their buffer. */
  Rect detectionBoundary;
};

/**
 * The framing-decision engine. For every vision result its owner calls, in this order,
 * `shouldPublishUpdatedPeopleCount`, `updatePeopleMap`, then until one is true `applyingLayout`,
 * `updateFeedPriorityOfFrame` and `updateLayoutFraming`; a true answer means that the layout is to be
 * published.
 *
 * A candidate layout is built from each result and compared with the layout on screen and the one that
 * waits. A real change waits for the layout timer of its kind; between changes, single frames are framed anew
 * when their subject has stayed off its position for the wait of that position.
 *
 * Used from one thread at a time. Subclasses override the steps; their order below is the order of the slots.
 */
class BaseLayout {
 public:
  BaseLayout();
  BaseLayout(const BaseLayout&) = delete;
  BaseLayout& operator=(const BaseLayout&) = delete;
  virtual ~BaseLayout();

  /** The class's name, the tag of its log lines. */
  virtual const char* getTag() const;

  /** The state for the debug dump: layout, persons, stream. Text with the dump's own deviations from strict
   * JSON;
   * "{}" without a layout. */
  virtual std::string getDebugDataInJson();

  /** The layout's part of it; needs a layout on screen. */
  virtual std::string getLayoutDataInJson();

  virtual void setTimerSetting(std::shared_ptr<BaseTimerSetting> setting);

  /** Builds and compares a candidate, adopts the waiting layout when its wait is over; true when it did. */
  virtual bool applyingLayout(const std::shared_ptr<MLData>& mlData);

  /** Frames anew what has been off its position for long enough; true when some frame was. */
  virtual bool updateLayoutFraming();

  /** Moves a person's frame to the camera that shows the person better; the base never does. */
  virtual bool updateFeedPriorityOfFrame();

  /** The core decision: whether the waiting layout is to be adopted now. */
  virtual bool verifyIfLayoutChangeNeeded(const std::shared_ptr<MLData>& mlData);

  virtual void printLayoutToLog(const std::shared_ptr<Layout>& layout, const std::string& prefix);

  /** ROOM for nobody, HEAD for one, GROUP for more. */
  virtual FramingType getLayoutTypeForGroupFrame(int headCount);

  /** Computes the view of every frame that is due; of all of them for a new layout (`fromFrameTimer` false).
   */
  virtual void updateLayoutViews(bool fromFrameTimer);

  virtual std::shared_ptr<BaseTimerSetting>& getTimerSetting();

  /** The wait cycle of every frame's subject; true when some reframe wait is over. */
  virtual bool updateCurrentTimer();

  /** Puts the waiting layout on screen. */
  virtual void applyNewLayout();

  virtual bool isLayoutValid();

  /** Puts a layout on screen that another device decided; false when it is refused. */
  virtual bool applySecondaryLayout(const std::shared_ptr<Layout>& layout);

  /** Replaces the known persons by those of a vision result. */
  virtual void updatePeopleMap(const std::shared_ptr<MLData>& mlData);

  /** The candidate layout for a vision result. */
  virtual std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData);

  /** Forgets the layout on screen and the waiting one. */
  virtual void resetLayouts();

  virtual unsigned getPeopleCount();

  /** The `source` of every frame on screen, in camera pixels. */
  virtual std::vector<Rect> getSceneRects() const;

  virtual bool isThereATimerRunning() const;

  /** The ids of the streams that layouts are made for, and so their number; none changes nothing. For hosts.
   */
  virtual void setDisplayLayoutStreamIDS(std::vector<unsigned> ids);

  virtual void updateLayoutWithStreamInfo(std::shared_ptr<Layout>& layout, unsigned streamId);

  /** The whole cycle of an engine that keeps several streams; an error for every other. */
  virtual bool process(const std::shared_ptr<MLData>& mlData);

  /** The layouts on screen, one per stream; null where there is none. */
  virtual std::vector<std::shared_ptr<Layout>> getFinalLayoutPtrs() const;

  /** The waiting layouts, one per stream; null where there is none. */
  virtual std::vector<std::shared_ptr<Layout>> getNextLayoutPtrs() const;

  virtual void setMaxLayouts(unsigned count);

  /** True when no frame shows anything. */
  virtual bool isNoneLayout(const std::shared_ptr<Layout>& layout);

  /** Wait for a change to `newType`, in milliseconds. */
  virtual std::uint32_t getLayoutChangeTimer(FramingType newType, bool peopleCountChanged);

  /** The zoom limit as a factor; 0 for none. */
  virtual unsigned getMaxScaleFactor();

  /**
   * The smallest box, in camera pixels, around the heads of the frame's persons in the frame's camera. False,
   * with `box` untouched, when a person is unknown, not seen by that camera or has no box.
   */
  virtual bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer);

  virtual std::string getLayoutChangeAnimation();

  /** Duration of a transition in milliseconds; 0 for an unknown name. */
  virtual std::uint32_t getLayoutChangeDuration(const std::string& animation);

  /** Gives the frames of a candidate their places in the output picture. */
  virtual void fillPositionRect(std::shared_ptr<Layout>& layout);

  virtual std::string getReframeAnimation(HeadPosition position);

  /** In milliseconds. */
  virtual std::uint32_t getReframeAnimationDuration(HeadPosition position);

  /** Reframe wait, in milliseconds, for the positions of single heads. */
  virtual std::uint32_t getWaitTimeForOtherCase(HeadPosition position);

  /** Wait for a change from a layout that is not a group, in milliseconds. */
  virtual std::uint32_t getOtherLayoutChangeTimer(FramingType newType, std::stringstream& explanation,
                                                  bool peopleCountChanged);

  /** Wait for a change from a group, in milliseconds. */
  virtual std::uint32_t getGroupLayoutChangeTimer(FramingType newType);

  virtual HeadPosition getGroupHeadPosition(const Frame& frame);
  virtual HeadPosition getProximityHeadPosition(const Frame& frame);
  virtual HeadPosition getHeadPosition(const Frame& frame);
  virtual void handleInvalidFrame(const Frame& frame);

  /** Places a frame around everybody. */
  virtual void calculateGroupFraming(Frame& frame);

  /** The head boxes that a group frame is placed around, in camera pixels. */
  virtual std::vector<Rect> getGroupHeadBounds(const Frame& frame);

  /** The box that the rule-of-thirds frame is placed around, in camera pixels. */
  virtual Rect getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& box);

  virtual PeopleMap& getHeadMapForGroup(const Frame& frame);

  /** Wait before a candidate is adopted, in milliseconds. */
  virtual std::uint32_t getWaitTime(const std::shared_ptr<Layout>& candidate, bool peopleCountChanged);

  /** Whether a different candidate is worth a change. */
  virtual bool checkIfLayoutSwitchNeeded(const std::shared_ptr<Layout>& candidate);

  /** The size of the image that a frame is cut from, in pixels. */
  virtual Dimension getImageSize(const Frame& frame);

  std::shared_ptr<Layout> getLayoutPtr() const { return mState.mCurLayout; }
  std::shared_ptr<Layout> getNextLayoutPtr() const { return mState.mNextLayout; }
  const PeopleMap& peopleMap() const { return mState.people; }

  /** Replaces the clock of every timer that this engine starts or tests. */
  void setCurrentTimerTickFun(TickFunction tick);

  /** Told every decision of this engine; null for nobody. The listener must outlive the engine or the next
   * call. */
  virtual void setDecisionListener(DecisionListener* listener) { mDecisionListener = listener; }

  /** Write views and heads into the log; for hosts. */
  void printFrameViews(const std::vector<Frame>& frames) const;
  void printFrameHeads(const std::shared_ptr<Layout>& layout) const;

  /** Places a frame around its persons by the rule of thirds; without a box of heads it stays as it is. */
  void calculateRuleOfThirdFor(Frame& frame);

  /** The view that the rule of thirds gives the frame around `box`, the box of its heads in camera pixels. */
  RuleOfThirdsView ruleOfThirdsView(const Frame& frame, const Rect& box);

  /** Says in the log that a person of the frame cannot be framed: no head there (null) or one without a box.
   */
  static void reportMissingHead(const Frame& frame, std::int64_t personId, const Head* head);

  /** Whether the number of people has changed, or 5000 ms have passed since the last periodic answer. Asked
   * before `updatePeopleMap`. */
  bool shouldPublishUpdatedPeopleCount(const std::shared_ptr<MLData>& mlData);

  /** Where the frame's subject stands, by the kind of frame. */
  virtual HeadPosition getCurrentHeadPosition(const Frame& frame);

  /** The people of a vision result whom the engine believes to be there; asked once for every result, before
   * anything else, and the answer is what the other operations get. The base believes the result. */
  virtual std::shared_ptr<MLData> findPresent(const std::shared_ptr<MLData>& mlData) { return mlData; }

  /** Reframe wait for a position, in milliseconds. */
  std::uint32_t getWaitTimeFor(HeadPosition position);

  /** The wait of a picture of everybody that the setting has as `waitMs`; by default just that. */
  virtual std::uint32_t waitForGroup(HeadPosition position, std::uint32_t waitMs);

 protected:
  std::uint32_t tick() const { return mTick(); }

  /** Remembers which wait of the installed setting holds the next layout back; returns its milliseconds. */
  std::uint32_t chooseWait(WaitField wait);

  /** The chosen wait of `ms` less `reductionMs`; one that is negative as a signed number is logged and none.
   */
  std::uint32_t shortenWait(std::uint32_t ms, std::uint32_t reductionMs);

  /** Computes what a frame shows, by the kind of frame. */
  virtual void updateFrameView(Frame& frame);

  /** What the frame of an empty room shows, in camera pixels. */
  virtual Rect getRoomView(const Frame& frame);

  /** The transition from the picture before, now that what the new one shows is known; by default nothing,
   * and that of getLayoutChangeAnimation stays. */
  virtual std::optional<std::string> transitionFrom(const Layout& before) const;

  /** Remembers these people; of two with one id the first counts. */
  void replacePeople(const std::vector<std::shared_ptr<FynHead>>& persons);

  /** The layout on screen, for that reason, as the candidate of type GROUP or ROOM when it is one: two of
   * them never differ. Null when it is none. */
  std::shared_ptr<Layout> keepEverybody(FramingType type, const char* reason);

  /** Says in the log what is wrong with a vision result, before a candidate is made of it. */
  virtual void reportInput(const MLData& data);

  /** The waits of the engine as the given setting; null when another kind is installed. */
  template <typename Setting>
  const Setting* timerSettingAs() {
    return dynamic_cast<const Setting*>(getTimerSetting().get());
  }

  /** The reframe wait of a single head; 0 when the installed setting has none. */
  std::uint32_t waitForSingleHead(HeadPosition position);

  /** The wait cycle of one frame of the layout on screen, whose subject stands at `position`; true when its
   * reframe wait is over. */
  bool updateFrameTimer(std::size_t index, Frame& frame, HeadPosition position);

  /** Whether some wait of a layout on screen or of a waiting one runs; either may be null. */
  static bool isTimerRunning(const Layout* current, const Layout* next);

  bool hasDecisionListener() const { return mDecisionListener != nullptr; }
  void decide(const LayoutDecision& decision) const {
    if (mDecisionListener != nullptr) {
      mDecisionListener->onDecision(decision);
    }
  }

  TickFunction mTick;
  EngineState mState;
  std::shared_ptr<BaseTimerSetting> mTimerSetting;
  std::int64_t mLastFrameNumber = -1;
  std::vector<unsigned> mDisplayStreamIds;
  unsigned mLayoutCount = 1;

 private:
  void dropPending(const char* why);
  LayoutDecision describe(DecisionKind kind, const Layout* from, const Layout& to) const;
  void addWait(LayoutDecision& decision, const Timer& wait) const;
  void reportChange(DecisionKind kind, const Layout* from, const Layout& to, const Timer& wait) const;
  void holdBack(const std::shared_ptr<Layout>& candidate, const LayoutComparison& comparison);
  bool isPendingDue();
  /** Whether a layout whose wait is over is taken now; by default always. Asked again with every result. */
  virtual bool mayAdopt(const Layout& due) const;
  bool isReframeDue(Frame& frame);
  void reframe(std::size_t index, Frame& frame);
  void startFrameTimer(std::size_t index, Frame& frame, HeadPosition position);
  void reportFrame(DecisionKind kind, std::size_t index, const Frame& frame, std::uint32_t waitedMs) const;

  DecisionListener* mDecisionListener = nullptr;
};

}  // namespace fyn::productionrules
