#pragma once

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/HeadsInView.h"
#include "layouts/people/PeopleHeadFaults.h"
#include "layouts/people/PeopleInputFaults.h"
#include "layouts/people/PeoplePresence.h"
#include "layouts/speaker/Exchange.h"
#include "layouts/speaker/HeadSmoother.h"
#include "layouts/speaker/MissedShare.h"
#include "layouts/speaker/SpeakerCamera.h"
#include "layouts/speaker/SpeakerFramingData.h"
#include "layouts/speaker/SpeakerFramingLayoutBuilder.h"
#include "layouts/speaker/SpeakerShots.h"
#include "layouts/speaker/SpeechBelief.h"
#include "layouts/speaker/SpeechTurns.h"

namespace fyn::productionrules {

/**
 * The picture follows who speaks, without chasing every cough. Each picture is of one camera: here the
 * device's own.
 *
 * Every vision result goes into the engine by `findPresent` and `updatePeopleMap`; the decision that follows
 * is made about that result. The waits come from the configuration whenever they are asked for. Log lines
 * keep the tag of the base.
 */
class SpeakerFramingLayout : public BaseLayout {
 public:
  SpeakerFramingLayout();
  ~SpeakerFramingLayout() override;

  /** The base's text, then who speaks and the recovery mode. */
  std::string getDebugDataInJson() override;

  /** Takes only a setting of its own kind; anything else is left aside. */
  void setTimerSetting(std::shared_ptr<BaseTimerSetting> setting) override;
  std::shared_ptr<BaseTimerSetting>& getTimerSetting() override;

  bool verifyIfLayoutChangeNeeded(const std::shared_ptr<MLData>& mlData) override;
  bool updateCurrentTimer() override;
  void updatePeopleMap(const std::shared_ptr<MLData>& mlData) override;

  /** The layout on screen itself, or the one that waits, while that is kept. */
  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;

  void resetLayouts() override;

  /** Less the time for which the candidate's speakers have been speaking, but not before the picture on
   * screen has been there for long enough. */
  std::uint32_t getWaitTime(const std::shared_ptr<Layout>& candidate, bool peopleCountChanged) override;
  std::uint32_t getLayoutChangeTimer(FramingType newType, bool peopleCountChanged) override;
  unsigned getMaxScaleFactor() override;
  std::string getLayoutChangeAnimation() override;
  std::string getReframeAnimation(HeadPosition position) override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  HeadPosition getGroupHeadPosition(const Frame& frame) override;
  void calculateGroupFraming(Frame& frame) override;

  /** Of a frame of everybody the heads, and where a speaker who walks will be soon. */
  std::vector<Rect> getGroupHeadBounds(const Frame& frame) override;

  /** The members of a SUBSET_SPEAKER frame who are in view, and everybody for any other frame. */
  PeopleMap& getHeadMapForGroup(const Frame& frame) override;

  /** False for a picture of speakers who are whole on screen already, unless it is to close in. */
  bool checkIfLayoutSwitchNeeded(const std::shared_ptr<Layout>& candidate) override;

  HeadPosition getCurrentHeadPosition(const Frame& frame) override;

  std::shared_ptr<MLData> findPresent(const std::shared_ptr<MLData>& mlData) override;

 protected:
  void updateFrameView(Frame& frame) override;
  std::optional<std::string> transitionFrom(const Layout& before) const override;

  /** Adds whom each camera shows whose heads count, the own one first. */
  virtual void addCamerasInUse(std::vector<HeadsInView>& cameras) const;

  /** The camera of the picture; who has the word is known. */
  virtual std::uint32_t chooseCamera(const MLData& data);

  /** The camera of the picture of whoever has the word; nothing when nobody speaks and nothing is held, or no
   * camera shows the speaker. */
  std::optional<std::uint32_t> cameraOfSpeaker();

 private:
  using Persons = std::vector<std::shared_ptr<FynHead>>;

  /** What is known of the people and their talk from one vision result to the next. */
  struct Memory {
    PeoplePresence presence;
    /** By camera. */
    std::map<std::uint32_t, HeadSmoother> smoothers;
    SpeechBelief belief;
    SpeechTurns turns;
    Exchange exchange;
    SpeakerCamera camera;
    SpeakerShots shots;
    MissedShare missed;
    /** The latest picture with somebody in it who has spoken; only such a one is held in silence. */
    std::shared_ptr<const Layout> speakersPicture;
  };

  /** What the wait of the latest candidate depends on. Milliseconds. */
  struct Urgency {
    bool isForWalker = false;
    bool isToCloseIn = false;
    std::uint32_t speechMs = 0;
    std::uint32_t leastShotMs = 0;
  };

  void listen();
  void findInView();
  void watchSpeakers(const MLData& data);
  void noteSpeech(const std::shared_ptr<Layout>& layout, FramingType pendingType) const;

  std::shared_ptr<Layout> choosePicture();
  std::shared_ptr<Layout> pictureOfSpeakers();
  std::shared_ptr<Layout> pictureOfTurn();
  std::shared_ptr<Layout> makeLayout(FramingType type, const Persons& persons, const char* reason) const;
  std::shared_ptr<Layout> keep(const std::shared_ptr<Layout>& layout, const char* reason);
  std::shared_ptr<Layout> closerPicture();
  void dropAbsent(Frame& frame) const;
  std::uint32_t tightenMs() const;
  void updateExchange();
  void noteUrgency(const Layout& candidate);

  Persons inViewOf(const std::set<std::int64_t>& persons) const;
  std::set<std::int64_t> wanted() const;
  /** Of the latest vision result. */
  HeadsInView headsOf(std::uint32_t camId) const;
  const Frame* frameOnScreen() const;
  bool showsSpeaker() const;
  bool isWholeOnScreen(const FynHead& person) const;
  /** With some room around the head of whom the picture is not made for. */
  bool isWellOnScreen(std::int64_t person) const;
  bool areWantedWellOnScreen() const;
  bool isAnySpeakerIn(const Frame& frame) const;
  bool isEverybodyOnScreenPresent() const;
  bool isAnybodyOnScreen() const;
  bool isHeld() const;
  Persons findWalkers() const;

  Memory mMemory;
  SpeakerFramingData mSpeech;
  PeopleHeadFaults mHeadFaults;
  PeopleInputFaults mInputFaults;
  Urgency mUrgency;
  /** The latest vision result, with smoothed boxes. */
  std::shared_ptr<MLData> mSmooth = std::make_shared<MLData>();
  std::vector<HeadsInView> mCameras;
  /** Of the latest vision result: whom the camera of the picture shows. */
  HeadsInView mHeads;
  /** The same, left to right: everybody in view of that camera, who of them is believed to speak, and
   * whom the picture would have to follow on a walk. */
  Persons mInView;
  Persons mSpeakers;
  Persons mWalkers;
  /** Of the latest vision result as well; kept only for their memory. */
  std::vector<SpeechHint> mHints;
  Persons mTagged;
  /** What getHeadMapForGroup answered last. */
  PeopleMap mMembers;
};

}  // namespace fyn::productionrules
