#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "layouts/people/FalseBoxes.h"
#include "layouts/people/HeadPath.h"
#include "layouts/people/KnownPlaces.h"
#include "layouts/people/PersonRenaming.h"
#include "layouts/people/SplitPersons.h"
#include "model/MLData.h"

namespace fyn::productionrules {

/**
 * Who is in the room, and who of them walks. A vision result is what a detector saw in one frame: heads are
 * missed for a moment, boxes flash up where nobody is, people get new numbers. Each of these would change who
 * is shown faster than any wait of a layout change is long, so that no change would ever come. All times are
 * ticks in milliseconds.
 */
class PeoplePresence {
 public:
  /**
   * The vision result with the people who are there; the same one when it has just them. Newcomers count once
   * they have been seen for long enough, those of the first result at once. Who is missed counts for some
   * time more, with the last boxes: longer for who has been there for long, shorter for who was about to
   * leave. The seen ones keep their order, the missed ones follow by id. A new number over the place of
   * somebody missed is the same person, unless both have been seen at once; when the old number comes back,
   * it was somebody else.
   *
   * With steadyFramingEnabled a newcomer who neither walks nor comes back to a place that is known counts
   * only after a longer time than boxes have lived of late where nobody was.
   *
   * Where heads rest is known of those who were there while it was asked for.
   */
  std::shared_ptr<MLData> update(const std::shared_ptr<MLData>& reported, std::uint32_t now,
                                 bool isRestAsked = false);

  /** Who has got another number in the latest result. */
  const std::vector<PersonRenamed>& renamed() const { return mRenamed; }

  /** Whether the person came less than `withinMs` ago; false for those of the first result. */
  bool hasJustCome(std::int32_t personId, std::uint32_t withinMs, std::uint32_t now) const;

  /** Whether the person counts without being in the latest result. */
  bool isMissed(std::int32_t personId) const;

  /** For how long the person has not been seen, in milliseconds; 0 for who is not known. */
  std::uint32_t missedMs(std::int32_t personId, std::uint32_t now) const;

  /** Whether the person was last seen to walk at most `withinMs` ago. */
  bool hasWalked(std::int32_t personId, std::uint32_t withinMs, std::uint32_t now) const;

  /** How the person's head moves in the camera; no movement when it was not seen there of late. */
  Velocity velocity(std::int32_t personId, std::uint32_t camId) const;

  /** Where the head will be after so many seconds at that pace, inside the image of the camera. */
  Rect placeAhead(std::int32_t personId, std::uint32_t camId, const Rect& box, double seconds) const;

  /** Where that head rests while it sways; `box`, its latest, of whom the camera has not seen of late. */
  Rect restingBox(std::int32_t personId, std::uint32_t camId, const Rect& box) const;

  void forget();

 private:
  struct Sighting {
    std::shared_ptr<FynHead> person;
    std::uint32_t first = 0;
    std::uint32_t latest = 0;
    /** Numbers of the first and of the latest result with the person, and how many have had the person. */
    std::uint64_t firstResult = 0;
    std::uint64_t latestResult = 0;
    std::uint64_t seen = 0;
    bool counts = false;
    /** Or has come back to a known place. */
    bool wasThereFirst = false;
    bool hasWalked = false;
    std::uint32_t latestWalk = 0;
    /** By which number the person was known before. */
    std::optional<std::int32_t> formerId;
    /** By camera. */
    std::map<std::uint32_t, HeadPath> paths;
  };

  using Sightings = std::map<std::int32_t, Sighting>;

  const HeadPath* findPath(std::int32_t personId, std::uint32_t camId) const;
  /** Whether the person counts. */
  bool note(const std::shared_ptr<FynHead>& person, std::uint32_t now);
  void follow(Sighting& sighting, std::uint32_t now) const;
  bool isBelieved(const Sighting& sighting, std::uint32_t now) const;
  bool isAnybodyThere() const;
  void findAgain(const MLData& data, std::uint32_t now);
  void comeBack(Sighting& newcomer, std::uint32_t now);
  bool takeBack(Sighting& returned, std::uint32_t now);
  Sightings::iterator findMissed(const Sighting& newcomer);
  static void inherit(Sighting& sighting, const Sighting& before);
  void forgetMissed(std::uint32_t now);
  static std::uint32_t holdMs(const Sighting& sighting);

  Sightings mSightings;
  FalseBoxes mFalseBoxes;
  KnownPlaces mKnownPlaces;
  SplitPersons mSplit;
  std::vector<PersonRenamed> mRenamed;
  /** Results so far. */
  std::uint64_t mResults = 0;
  bool mIsRestAsked = false;
};

}  // namespace fyn::productionrules
