#pragma once

#include "geometry/PeopleMap.h"
#include "model/Frame.h"

/** The frame of some of the people: its members are the persons in `fynHeads`. */
namespace fyn::productionrules {

/** Whether a layout or frame of that type is made for those who speak, and not for the room. */
constexpr bool isOfSpeaker(FramingType type) {
  return type == FramingType::HEAD || type == FramingType::PROXIMITY || type == FramingType::SUBSET_SPEAKER;
}

/** Places the frame closely around those of its members who are in view, the others of `people` uncut. */
void placeMembers(Frame& frame, const PeopleMap& people);

/** Whether the frame is to be placed anew, and why: a member is cut, or a neighbour who need not be, or it
 * would be clearly smaller. CENTER without a member in view. */
HeadPosition memberPosition(const Frame& frame, const PeopleMap& people);

}  // namespace fyn::productionrules
