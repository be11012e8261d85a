#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/Geometry.h"
#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** A person's head as one camera sees it. What is not known stays empty and is left out of the document. */
struct SeenHead {
  /** Index into the meeting's cameras. */
  std::int32_t camera = 0;
  /** Camera pixels. */
  Rect box;
  bool speaking = false;
  /** Selection box of a speaker, camera pixels. */
  std::optional<Rect> selectionBox;
  /** Degrees between the face and the line to the camera, 0 (frontal) to 180. */
  std::optional<int> yaw;
  /** Degrees, positive when looking up. */
  std::optional<int> pitch;
  /** Per cent of certainty that the box holds a head. */
  std::optional<int> score;
};

struct SeenPerson {
  /** Also the id of each of the person's heads. */
  std::int32_t id = 0;
  std::vector<SeenHead> heads;
};

/** What the vision pipeline reports of one video frame. */
struct VisionResult {
  /** Milliseconds from the start of the meeting. */
  std::int64_t t = 0;
  std::int64_t frameNumber = 0;
  std::vector<SeenPerson> persons;
};

/** What is true when the result is: annotations have no errors of their own. */
Truth truthOf(const VisionResult& result);

/** One camera of a meeting; its id is its index. */
struct MeetingCamera {
  /** Pixels. */
  Dimension image;
};

/**
 * The message that carries a result, as a vision pipeline publishes it. Heads carry the rank of their view
 * ("qfactor") and for its sake no "fynCamId": a head with that key keeps the default rank, and the service
 * could no longer choose the best camera of a person.
 */
BusMessage visionMessage(const VisionResult& result, const std::vector<MeetingCamera>& cameras);

/** The messages by which a device learns its own camera (0), all cameras and their image sizes. */
std::vector<BusMessage> cameraMessages(const std::vector<MeetingCamera>& cameras);

}  // namespace fyn::productionrules
