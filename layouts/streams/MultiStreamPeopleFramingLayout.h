#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "layouts/people/PeopleFramingLayout.h"
#include "layouts/streams/StreamAssignment.h"

namespace fyn::productionrules {

/**
 * The streams that each stay with one person or one group of neighbours. Each is a picture of its own with
 * its own layouts and waits: HEAD for one person, one PROXIMITY frame around several. A GROUP frame around
 * everybody in the room for a stream without people, for one whose person walks, and where a closer view
 * would cut somebody; the ROOM view while nobody is in the room.
 *
 * An operation on layouts applies to every stream in turn, lowest first.
 */
class MultiStreamPeopleFramingLayout : public PeopleFramingLayout {
 public:
  MultiStreamPeopleFramingLayout();
  ~MultiStreamPeopleFramingLayout() override;

  const char* getTag() const override;
  bool applyingLayout(const std::shared_ptr<MLData>& mlData) override;
  bool updateLayoutFraming() override;
  bool verifyIfLayoutChangeNeeded(const std::shared_ptr<MLData>& mlData) override;
  bool updateCurrentTimer() override;
  void applyNewLayout() override;

  /** The candidate of the stream at hand; of everybody when the operation is asked for by itself. */
  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;

  void resetLayouts() override;
  bool isThereATimerRunning() const override;
  std::vector<std::shared_ptr<Layout>> getFinalLayoutPtrs() const override {
    return layoutsOf(&PictureState::mCurLayout);
  }
  std::vector<std::shared_ptr<Layout>> getNextLayoutPtrs() const override {
    return layoutsOf(&PictureState::mNextLayout);
  }
  void fillPositionRect(std::shared_ptr<Layout>& layout) override;
  void calculateGroupFraming(Frame& frame) override;

  /** One stream for each id, in that order. True when a stream that had a picture has gone or has another id
   * now. */
  bool setStreamIds(const std::vector<unsigned>& ids);

  std::shared_ptr<MLData> findPresent(const std::shared_ptr<MLData>& mlData) override;

  /** Gives every person of a vision result a stream; before the other operations on that result. */
  void assignPeople(const MLData& data);

  /** The operations of single streams, by their position among the ids. */
  bool applyStreamLayout(std::size_t stream, const std::shared_ptr<MLData>& mlData);
  bool updateStreamFraming(std::size_t stream);
  bool applySecondaryLayoutToStream(std::size_t stream, const std::shared_ptr<Layout>& layout);

 protected:
  void reportInput(const MLData& data) override;
  HeadPosition positionInPlace(const Frame& frame, const Rect& base) const override;
  bool isSteady() const override { return true; }
  bool isPictureOfItsOwn() const override { return true; }
  bool isMeant(const FynHead& person) const override;
  bool showsWholeRoom() const override;

 private:
  /** What a stream keeps from one vision result to the next. */
  struct Stream {
    PictureState state;
    /** Whom it follows, ascending. */
    std::vector<std::int64_t> followed;
    /** Whom it followed when the group frame on screen was placed, which names everybody. */
    std::set<std::int64_t> group;
  };

  class Selection;

  template <typename Operation>
  bool inEveryStream(Operation operation);
  static const std::set<std::int64_t>& peopleOnScreen(const Stream& stream);
  bool isRestless(const FynHead& person) const;
  std::shared_ptr<Layout> pictureOfEverybody(const MLData& data, const char* reason);
  std::vector<std::shared_ptr<Layout>> layoutsOf(std::shared_ptr<Layout> PictureState::*which) const;

  StreamAssignment mAssignment;
  std::vector<Stream> mStreams;
  /** The only unit of the stream whose candidate is made. */
  std::vector<PeopleUnit> mFollowed{1};
  /** Whom the picture of each stream shows. */
  std::vector<const std::set<std::int64_t>*> mOnScreen;
  /** The stream whose state stands in the place of the engine's own at the moment; null for none. */
  Stream* mSelected = nullptr;
};

}  // namespace fyn::productionrules
