#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/GrownViews.h"
#include "layouts/people/HeadEnvelope.h"
#include "layouts/people/HeadsOfCamera.h"
#include "layouts/people/PeopleHeadFaults.h"
#include "layouts/people/PeopleInputFaults.h"
#include "layouts/people/PeoplePresence.h"
#include "layouts/people/PeopleUnits.h"

namespace fyn::productionrules {

/** What a people engine has chosen before tiles are given out. */
struct PeopleChoice {
  /** Everybody who can be shown, sorted. */
  std::vector<Seat> seats;
  /** With more people the layout is a group. */
  std::int32_t maxPeople = 0;
  /** The camera of a ROOM layout. */
  std::uint32_t roomCamId = 0;
  /** The camera of a GROUP layout. */
  std::uint32_t groupCamId = 0;
};

/**
 * What the engines have in common that decide for people in tiles: who gets a tile, where it lies, what it
 * shows and how long a change waits. Which camera shows whom is the engine's own choice.
 */
class BasePeopleLayout : public BaseLayout {
 public:
  BasePeopleLayout();

  /** With the head buffers also while proximitySquareFeature is on; false as well for heads outside the
   * image. */
  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) override;

  /** Gives the frames their tiles; one picture of all gets its place from the base. */
  void fillPositionRect(std::shared_ptr<Layout>& layout) override;

  std::uint32_t waitForGroup(HeadPosition position, std::uint32_t waitMs) override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  std::uint32_t getOtherLayoutChangeTimer(FramingType newType, std::stringstream& explanation,
                                          bool peopleCountChanged) override;

  /**
   * For neighbours, while proximitySquareFeature is on, the square around them: a view takes its width from
   * its height, so a wide box in a narrow tile would lose its sides. The base's for all others. Grown until
   * the tile enlarges the camera's pixels by no more than 2.5.
   */
  Rect getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& latest) override;

  /** Shorter when people have left. */
  std::uint32_t getWaitTime(const std::shared_ptr<Layout>& candidate, bool peopleCountChanged) override;

  /** Makes the tiles of one row alike, too. */
  void updateLayoutViews(bool fromFrameTimer) override;

  void updatePeopleMap(const std::shared_ptr<MLData>& mlData) override;
  void resetLayouts() override;
  bool mayAdopt(const Layout& due) const override;
  HeadPosition getGroupHeadPosition(const Frame& frame) override;
  void calculateGroupFraming(Frame& frame) override;

  /** The heads, and where those who walk will be soon. */
  std::vector<Rect> getGroupHeadBounds(const Frame& frame) override;

  HeadPosition getCurrentHeadPosition(const Frame& frame) override;
  std::string getReframeAnimation(HeadPosition position) override;
  std::shared_ptr<MLData> findPresent(const std::shared_ptr<MLData>& mlData) override;

 protected:
  /**
   * The candidate layout: a tile for every unit; a ROOM layout for nobody; a GROUP layout for too many people
   * or units, for a single unit of more than three, when a tile would cut somebody whom it shows, and when
   * tiles show people no larger. The people map must be that of `data`: the views are tried with it.
   */
  std::shared_ptr<Layout> makeCandidate(const MLData& data, PeopleChoice choice);

  /** The view that the frame's place would get now; nothing when it would cut somebody of the frame. */
  std::optional<RuleOfThirdsView> tryView(const Frame& frame);

  /** Whether tryView finds one; true only where that can be told without a look at who else is there. */
  bool isSurelyShown(const Frame& frame);

  /** The position of people who share a tile that shows them well; `base` is what its view would be made for
   * now. CENTER by default. */
  virtual HeadPosition positionInPlace(const Frame& frame, const Rect& base) const;

  /** The whole image of the camera. */
  Rect getRoomView(const Frame& frame) override;

  /** Whether the rules for rooms in which people walk and detectors err hold; by default as configured. */
  virtual bool isSteady() const;
  /** Whether a tile fills the output. */
  virtual bool isPictureOfItsOwn() const { return false; }

  /** Whether the picture of everybody is of the whole image; by default never. */
  virtual bool showsWholeRoom() const;

  /** Whether a scene has just begun, so that nobody can tell yet who walks. */
  bool isFirstLook() const;

  /** Whether the picture is made for that person; by default for everybody. */
  virtual bool isMeant(const FynHead& person) const;

  /** Whether the person has walked of late, so that no tile would hold still. */
  bool hasWalked(const FynHead& person) const;

  /** Whether that holds for anybody, within the time in milliseconds. */
  bool hasAnybodyWalked(std::uint32_t withinMs) const;

  /** The frame of a picture of everybody, null while another one is shown. */
  const Frame* groupOnScreen() const;

  /** Why everybody is in one picture before anybody is known to walk. */
  static constexpr const char* kFirstLook = "a first look at the room";

  /** Gives the persons of the layouts at hand the numbers that they have now. */
  void takeNewNumbers();

  const PeoplePresence& presence() const { return mPresence; }

  /** Whether the engine bridges the errors of the detector. */
  bool usesPresence() const;

  PeopleInputFaults mInputFaults;

  /** A tile for each unit, in a layout of that type; the layout on screen when it has just these tiles: it
   * serves as the candidate then. */
  std::shared_ptr<Layout> tilesOf(const std::vector<PeopleUnit>& units, FramingType type);

 private:
  /** Why everybody is in one picture although tiles are asked for. */
  static constexpr const char* kUnsettled = "the tiles do not settle";
  static constexpr const char* kCutting = "a tile would cut somebody";
  static constexpr const char* kNoLarger = "a tile would show nobody larger";

  std::shared_ptr<Layout> layoutFor(const MLData& data, PeopleChoice choice);
  /** Null when there are no tiles for these people; `noTiles` is why not then, in steady framing. */
  std::shared_ptr<Layout> tilesFor(std::vector<Seat> seats, const char*& noTiles);
  /** `reason`: by which rule it is not tiles, or "". */
  std::shared_ptr<Layout> oneFrame(const MLData& data, FramingType type, std::uint32_t camId,
                                   const char* reason);
  void keepSettled(std::vector<Seat>& seats) const;
  bool cutsOthers(const Frame& frame, const Rect& view);
  bool canTurnAway(const Frame& frame, const Rect& view);
  const std::vector<HeadOfPerson>& headsSeenBy(std::uint32_t camId);
  /** Whom the frame's camera shows, in an image of the size that its views are cut from. */
  HeadsInView headsOf(const Frame& frame);
  /** Of a tile whose heads are in the box now; `row` is the layout that it is part of, null while the tile is
   * only tried. */
  TileView tileView(const Frame& frame, const Rect& latest, const HeadsInView& heads, const Layout* row);
  TileView viewAround(const Frame& frame, const Rect& box, const Dimension& image, const Layout* row);
  Rect restingBox(const Frame& frame, const Rect& latest) const;
  /** As high as the tile asks for, whoever else is there. */
  TileView grownView(const Frame& frame, const Rect& box, const Dimension& image);
  TileGrowth growthOf(const Frame& frame, const Rect& own);
  void fitAmongOthers(TileView& view, const Frame& frame, const Rect& own, const Layout* row);
  bool areLargerThanGroup(const Layout& tiles, const std::vector<Rect>& views);
  void formUnitsOf(std::vector<Seat> seats);
  bool doesSomebodyWalk() const;
  bool isUnsettled(const std::shared_ptr<Layout>& tiles) const;
  bool isFirstGroup(std::uint32_t withinMs) const;
  bool isEverybodyWhole() const;
  bool isATileEmpty() const;
  bool canCloseIn(const Frame& frame);
  bool isSameGroupView(const Frame& frame, const Rect& view);
  /** The picture of everybody around these boxes. */
  Rect groupView(const Frame& frame, const std::vector<Rect>& bounds);
  std::uint32_t steadyWait(const Layout& candidate, std::uint32_t waitMs) const;
  std::uint32_t steadyReframeWait(HeadPosition position, std::uint32_t waitMs) const;

  PeopleHeadFaults mHeadFaults;
  PeoplePresence mPresence;
  HeadEnvelope mEnvelope;
  GrownViews mGrownViews;
  /** Who shares a tile, and what the tiles would show, while a candidate is made. */
  std::vector<PeopleUnit> mUnits;
  std::vector<Rect> mViews;
  HeadsOfCamera mHeadsOfCamera;
  /** Whose heads a tile has to mind; serves one tile after the other. */
  std::vector<Rect> mOthers;
};

}  // namespace fyn::productionrules
