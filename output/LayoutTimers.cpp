#include "output/LayoutTimers.h"

namespace fyn::productionrules {

namespace {

JsonText frameTimer(const Frame& frame, std::int32_t streamId, std::uint32_t remaining) {
  return OrderedObject(5)
      .add("frameindex", frame.frameIndex)
      .add("stream", streamId)
      .add("frameType", layoutToText(frame.frameType))
      .add("headPosition", headPositionText(frame.headPosition))
      .add("frameTimer", remaining)
      .take();
}

JsonText layoutTimers(const Layout& layout, std::uint32_t tick, bool isCurrent) {
  std::vector<JsonText> frames;
  frames.reserve(layout.frames.size());
  for (const Frame& frame : layout.frames) {
    const std::uint32_t remaining = isCurrent ? remainingMs(frame.headPositionTimer, tick) : 0;
    frames.push_back(frameTimer(frame, layout.streamId, remaining));
  }
  return OrderedObject(4)
      .add("isVirtualCamera", isVirtualCameraText(layout))
      .add("layoutType", layoutToText(layout.layoutType))
      .add("layoutTimer", remainingMs(layout.layoutTimer, tick))
      .add("frames", frames)
      .take();
}

}  // namespace

const char* isVirtualCameraText(const Layout& layout) {
  return layout.isLogicalStream ? "false" : "true";
}

void updateLayoutTimers(const std::vector<std::shared_ptr<Layout>>& layouts, OrderedObject& target,
                        std::uint32_t tick, const char* key) {
  const bool isCurrent = key == kCurrentLayoutKey;
  std::vector<JsonText> entries;
  entries.reserve(layouts.size());
  for (const std::shared_ptr<Layout>& layout : layouts) {
    if (layout != nullptr) {
      entries.push_back(layoutTimers(*layout, tick, isCurrent));
    }
  }
  target.add(key, OrderedObject(1).add("layouts", entries).take());
}

}  // namespace fyn::productionrules
