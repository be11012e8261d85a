#include "geometry/LayoutDescription.h"

namespace fyn::productionrules {

namespace {

void appendSides(std::string& text, const Rect& rect) {
  text += std::to_string(rect.left) + "," + std::to_string(rect.top) + "," + std::to_string(rect.right) +
          "," + std::to_string(rect.bottom);
}

void appendHeadBox(std::string& text, const Frame& frame, std::int64_t personId, const PeopleMap& persons) {
  const auto person = persons.find(personId);
  if (person == persons.end()) {
    text += "[** no head found **]";
    return;
  }
  const std::shared_ptr<Head> head = person->second->getHead(frame.fynCamId);
  if (head == nullptr) {
    text += "[** empty **]";
    return;
  }
  text += "[";
  appendSides(text, head->bbox);
  text += "],";
}

void appendPersons(std::string& text, const Frame& frame, const PeopleMap& persons) {
  text += " faces:{";
  for (const std::int64_t personId : frame.fynHeads) {
    text += " fynhead: " + std::to_string(personId) + " ";
    // All heads of the frame for every person; kept: log readers know it so.
    for (const std::int64_t headId : frame.heads) {
      text += ", head: " + std::to_string(headId) + " ";
    }
    appendHeadBox(text, frame, personId, persons);
  }
  text += "},";
}

void appendFrame(std::string& text, const Frame& frame, const PeopleMap& persons) {
  text += " Frametype: ";
  text += layoutToText(frame.frameType);
  text += " #heads: " + std::to_string(frame.fynHeads.size());
  if (!frame.fynHeads.empty()) {
    appendPersons(text, frame, persons);
  }
  text += " view:[";
  appendSides(text, frame.source);
  text += "] pos:[";
  appendSides(text, frame.dest);
  text += "],";
}

}  // namespace

std::string convertLayoutToString(const std::shared_ptr<Layout>& layout, const PeopleMap& persons) {
  if (layout == nullptr) {
    return "layout is a nullptr";
  }
  std::string text = " LayoutType: ";
  text += layoutToText(layout->layoutType);
  text += " headCount: " + std::to_string(layout->faceCount);
  text += " streamID: " + std::to_string(layout->streamId);
  text += layout->isLogicalStream ? " isLogicalStream: 1" : " isLogicalStream: 0";
  text += " animation: " + layout->animation;
  text += " duration: " + std::to_string(layout->duration);
  text += " headFrameCount: " + std::to_string(layout->headFrameCount);
  text += " proximityFrameCount: " + std::to_string(layout->proximityFrameCount);
  text += " Frames (" + std::to_string(layout->frames.size()) + ") {";
  for (const Frame& frame : layout->frames) {
    appendFrame(text, frame, persons);
  }
  return text + "}";
}

}  // namespace fyn::productionrules
