#include "layouts/speaker/TrialPicture.h"

#include <algorithm>
#include <utility>

#include "geometry/RectMath.h"
#include "layouts/cycle/ZoomLimit.h"
#include "layouts/speaker/CloseView.h"
#include "layouts/speaker/MemberFrame.h"
#include "layouts/speaker/SpeakerFramingLayoutBuilder.h"

namespace fyn::productionrules {

namespace {

// A picture of part of the room has at most this share of the area of the group frame. With 0.8 a speaker is
// in the picture for 0.2 per cent more of the time, and close for 4 less.
constexpr double kShareOfRoom = 0.6;

double areaOfView(const Rect& view) {
  return double{1} * widthOf(view) * heightOf(view);
}

bool isIn(const Rect& view, const Rect& head) {
  const std::int64_t x = (std::int64_t{head.left} + head.right) / 2;
  const std::int64_t y = (std::int64_t{head.top} + head.bottom) / 2;
  return view.left <= x && x <= view.right && view.top <= y && y <= view.bottom;
}

}  // namespace

std::vector<Rect> TrialPicture::boundsOfAll() const {
  std::vector<Rect> bounds;
  bounds.reserve(mPeople.size());
  for (const auto& [id, person] : mPeople) {
    if (const Head* const head = mHeads.find(*person)) {
      bounds.push_back(head->bbox);
    }
  }
  return bounds;
}

Rect TrialPicture::viewOf(const Persons& persons) const {
  Frame frame;
  frame.fynCamId = mHeads.camId();
  frame.fynHeads = persons;
  placeMembers(frame, mPeople);
  return frame.source;
}

bool TrialPicture::isLowerThan(double height, const Persons& persons) const {
  return mayBeLowerThan(height, persons) && heightOf(viewOf(persons)) < height;
}

bool TrialPicture::mayBeLowerThan(double height, const Persons& persons) const {
  const std::vector<Rect> members = mHeads.bounds(mPeople, persons);
  return !members.empty() && canBeLowerThan(height, mHeads.camId(), members, speakerZoomLimit());
}

bool TrialPicture::isClose(const Persons& persons) const {
  if (!mHeads.holdsAll(mPeople, persons)) {
    return false;
  }
  const Rect view = viewOf(persons);
  const std::vector<Rect> all = boundsOfAll();
  const auto shown =
      std::count_if(all.begin(), all.end(), [&view](const Rect& head) { return isIn(view, head); });
  return 2 * static_cast<std::size_t>(shown) <= all.size() + 1;
}

bool TrialPicture::isPartOfRoom(const Persons& persons) const {
  const std::vector<Rect> all = boundsOfAll();
  if (!mHeads.holdsAll(mPeople, persons) || persons.size() >= all.size()) {
    return false;
  }
  Frame everybody;
  everybody.fynCamId = mHeads.camId();
  SpeakerFramingLayoutBuilder::calculateGroupFraming(everybody, all, speakerZoomLimit());
  return areaOfView(viewOf(persons)) <= kShareOfRoom * areaOfView(everybody.source);
}

TrialPicture::Persons TrialPicture::withOthers(Persons persons,
                                               const std::vector<std::int64_t>& others) const {
  for (const std::int64_t other : others) {
    Persons more = persons;
    if (more.insert(other).second && isClose(more)) {
      persons = std::move(more);
    }
  }
  return persons;
}

}  // namespace fyn::productionrules
