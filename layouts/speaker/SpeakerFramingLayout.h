#pragma once

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/PeopleHeadFaults.h"
#include "layouts/people/PeopleInputFaults.h"
#include "layouts/speaker/SpeakerFramingData.h"
#include "layouts/speaker/SpeakerFramingLayoutBuilder.h"

namespace fyn::productionrules {

/**
 * The picture follows who speaks, without chasing every cough. The camera is the device's own.
 *
 * Every vision result goes into the engine by `updatePeopleMap`; the decision that follows is made about that
 * result. The waits come from the configuration whenever they are asked for. Log lines keep the tag of the
 * base.
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

  /** A copy of the layout on screen while it is held. */
  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;

  std::uint32_t getLayoutChangeTimer(FramingType newType, bool peopleCountChanged) override;
  unsigned getMaxScaleFactor() override;

  /** A head that is missing or has no box is reported when that begins, not with every result. */
  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) override;

  std::string getLayoutChangeAnimation() override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  HeadPosition getGroupHeadPosition(const Frame& frame) override;
  void calculateGroupFraming(Frame& frame) override;
  std::vector<Rect> getGroupHeadBounds(const Frame& frame) override;

  /** The members of a SUBSET_SPEAKER frame who are in view, and everybody for any other frame. */
  PeopleMap& getHeadMapForGroup(const Frame& frame) override;

  /** False while every speaker is framed and nobody on screen has gone. */
  bool checkIfLayoutSwitchNeeded(const std::shared_ptr<Layout>& candidate) override;

 private:
  std::shared_ptr<Layout> createCandidate();
  bool showsSpeaker() const;
  bool isAnySpeakerIn(const Frame& frame) const;
  bool isEverybodyOnScreenPresent() const;
  bool isHeld() const;
  bool hasUnusableMember(const Frame& frame) const;
  bool wouldCutMembers(const Frame& frame);
  void keepMembersWhole(Frame& frame);
  void noteSpeech(const std::shared_ptr<Layout>& layout, FramingType pendingType) const;

  SpeakerFramingData mSpeech;
  PeopleHeadFaults mHeadFaults;
  PeopleInputFaults mInputFaults;
  /** The latest picture with somebody in it who has spoken; only such a one is held in silence. */
  std::shared_ptr<const Layout> mSpeakersPicture;
  /** The device's own camera, as of the latest vision result. */
  std::uint32_t mCamId;
  std::vector<std::shared_ptr<FynHead>> mInView;
  /** What getHeadMapForGroup answered last. */
  PeopleMap mMembers;
};

}  // namespace fyn::productionrules
