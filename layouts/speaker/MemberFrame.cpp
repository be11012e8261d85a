#include "layouts/speaker/MemberFrame.h"

#include <algorithm>

#include "geometry/FramePredicates.h"
#include "geometry/RectMath.h"
#include "layouts/cycle/ZoomLimit.h"
#include "layouts/people/HeadsInView.h"
#include "layouts/speaker/CloseView.h"

namespace fyn::productionrules {

namespace {

// Of the height of a frame: it is placed anew when that would make it smaller than this.
constexpr double kSmaller = 0.65;

// Null for a member, and for who is not in view.
const Head* findNeighbour(const Frame& frame, const PeopleMap::value_type& person, const HeadsInView& heads) {
  return frame.fynHeads.count(person.first) == 0 ? heads.find(*person.second) : nullptr;
}

std::vector<Rect> neighboursOf(const Frame& frame, const PeopleMap& people, const HeadsInView& heads) {
  std::vector<Rect> neighbours;
  neighbours.reserve(people.size());
  for (const auto& person : people) {
    if (const Head* const head = findNeighbour(frame, person, heads)) {
      neighbours.push_back(head->bbox);
    }
  }
  return neighbours;
}

}  // namespace

void placeMembers(Frame& frame, const PeopleMap& people) {
  const HeadsInView heads = headsToFollow(frame.fynCamId);
  placeClosely(frame, heads.bounds(people, frame.fynHeads), neighboursOf(frame, people, heads),
               speakerZoomLimit());
}

HeadPosition memberPosition(const Frame& frame, const PeopleMap& people) {
  const HeadsInView heads = headsToFollow(frame.fynCamId);
  const std::vector<Rect> members = heads.bounds(people, frame.fynHeads);
  // Without a member in view there is nothing to frame anew; the layout change follows.
  if (members.empty()) {
    return HeadPosition::CENTER;
  }
  const auto cutsNeighbour = [&](const Rect& view) {
    return std::any_of(people.begin(), people.end(), [&](const auto& person) {
      const Head* const head = findNeighbour(frame, person, heads);
      return head != nullptr && cuts(view, head->bbox);
    });
  };
  const bool areWhole = std::all_of(members.begin(), members.end(),
                                    [&](const Rect& head) { return heads.isWhole(head, frame.source); });
  const bool isNeighbourCut = cutsNeighbour(frame.source);
  const double smaller = kSmaller * heightOf(frame.source);
  // The usual case.
  if (areWhole && !isNeighbourCut && !canBeLowerThan(smaller, frame.fynCamId, members, speakerZoomLimit())) {
    return HeadPosition::CENTER;
  }
  Frame anew = frame;
  placeClosely(anew, members, neighboursOf(frame, people, heads), speakerZoomLimit());
  if (anew.source == frame.source) {
    return HeadPosition::CENTER;
  }
  if (isGFHeadOutside(frame.source, members)) {
    return HeadPosition::GROUP_HEAD_OUTSIDE;
  }
  if (!areWhole || (isNeighbourCut && !cutsNeighbour(anew.source))) {
    return HeadPosition::GROUP_HEAD_ON_EDGE;
  }
  return heightOf(anew.source) < smaller ? HeadPosition::GROUP_MOVE_CLOSE : HeadPosition::CENTER;
}

}  // namespace fyn::productionrules
