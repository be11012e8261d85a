#pragma once

#include <cstdint>
#include <vector>

#include "tools/report/Picture.h"

namespace fyn::productionrules {

/** A person in the room, and where the streams show the person. */
struct PersonState {
  std::int64_t id = 0;
  bool speaks = false;
  CameraHeads heads;
  /** The best over all streams. */
  Visibility visibility = Visibility::Off;
  /** Framed as the mode frames a speaker, see docs/measuring.md. */
  bool framedAsSpeaker = false;
  /** In view of a frame that is not one of everybody, and in a picture that shows at most half of those who
   * are there.
   */
  bool isSingledOut = false;
  bool isClose = false;
  /** In how many frames that were made for the person the person can be seen whole, and of how many. */
  int framesWhole = 0;
  int frames = 0;
  /** One per stream, in the order of RoomState::pictures. */
  std::vector<Appearance> appearances;
};

/** The room and what the viewers see of it. */
struct RoomState {
  std::vector<StreamPicture> pictures;
  /** Ascending by id. Persons without a head box in any camera are left out. */
  std::vector<PersonState> persons;
  /** The pictures are to show whoever comes in. */
  bool owesNewcomers = true;
};

}  // namespace fyn::productionrules
