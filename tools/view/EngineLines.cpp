#include "tools/view/EngineLines.h"

#include "geometry/FrameShapes.h"
#include "geometry/OffCenter.h"
#include "output/JsonLayoutBuilder.h"
#include "platform/Ticks.h"
#include "platform/Topics.h"
#include "service/DecisionDocument.h"
#include "tools/recording/CompactText.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kFramesKey = "frames";

/** `value` is JSON. */
std::string lineWith(std::int64_t t, const char* key, const std::string& value) {
  return lineOfTime(t, [&](CompactText& text) {
    text.key(key);
    text.json(value);
  });
}

void addWait(std::vector<std::int64_t>& waits, const Timer& timer) {
  waits.insert(waits.end(), {timer.duration, timer.startTicks});
}

/** What the waits of `layouts` depend on, apart from the time that passes. */
void addWaits(std::vector<std::int64_t>& waits, const std::vector<std::shared_ptr<Layout>>& layouts) {
  for (const std::shared_ptr<Layout>& layout : layouts) {
    waits.push_back(layout != nullptr ? static_cast<std::int64_t>(layout->layoutType) : -1);
    if (layout == nullptr) {
      continue;
    }
    addWait(waits, layout->layoutTimer);
    waits.insert(waits.end(), {layout->streamId, static_cast<std::int64_t>(layout->frames.size())});
    for (const Frame& frame : layout->frames) {
      waits.insert(waits.end(), {static_cast<std::int64_t>(frame.frameType),
                                 static_cast<std::int64_t>(frame.headPosition)});
      addWait(waits, frame.headPositionTimer);
    }
  }
}

/** Only a frame that follows single heads asks whether they are centred. */
bool hasOffCenterBound(const Frame& frame) {
  switch (frame.frameType) {
    case FramingType::PROXIMITY:
    case FramingType::GROUP:
    case FramingType::SUBSET_SPEAKER:
    case FramingType::ROOM:
    case FramingType::NONE:
      return false;
    default:
      const FrameShape* const shape = findFrameShape(frame.frameLayout);
      return shape != nullptr && shape->offCenterSide != nullptr;
  }
}

void writeFrame(CompactText& text, const Layout& layout, const Frame& frame) {
  text.open('{');
  text.member("stream", layout.streamId);
  text.member("frameindex", frame.frameIndex);
  if (frame.detectionBoundary.right > frame.detectionBoundary.left) {
    text.member("detectionBoundary", frame.detectionBoundary);
  }
  if (hasOffCenterBound(frame)) {
    text.member("offCenterBound", calculateOffcenterFrameBound(frame.source, frame.frameLayout));
  }
  text.member("headPosition", headPositionText(frame.headPosition));
  text.key("heads");
  text.open('[');
  for (const std::int64_t id : frame.fynHeads) {
    text.integer(id);
  }
  text.close(']');
  text.close('}');
}

}  // namespace

void EngineLines::onDecision(const LayoutDecision& decision) {
  mSink.put(decisionLine(mNow(), decision, decisionDocument(GetTicks(), decision)));
}

void EngineLines::look(ProductionRuleIPCService& service) {
  const std::shared_ptr<BaseLayout> engine = service.trackingMode().getFramingLayout();
  if (engine == nullptr) {
    return;
  }
  const Layouts current = engine->getFinalLayoutPtrs();
  writeWaits(current, engine->getNextLayoutPtrs());
  writeFrames(current);
}

void EngineLines::writeWaits(const Layouts& current, const Layouts& next) {
  std::vector<std::int64_t> waits;
  addWaits(waits, current);
  addWaits(waits, next);
  if (waits == mWaits) {
    return;
  }
  mWaits = std::move(waits);
  mSink.put(messageLine(mNow(), std::string(topics::kTimerDebug),
                        JsonLayoutBuilder().generateDebugTimerInfo(current, next)));
}

void EngineLines::writeFrames(const Layouts& current) {
  std::string frames;
  CompactText text(frames);
  text.open('[');
  for (const std::shared_ptr<Layout>& layout : current) {
    if (layout != nullptr) {
      for (const Frame& frame : layout->frames) {
        writeFrame(text, *layout, frame);
      }
    }
  }
  text.close(']');
  if (frames == mFrames) {
    return;
  }
  mFrames = std::move(frames);
  const std::int64_t t = mNow();
  mSink.put({t, LineWorth::Replaceable, kFramesKey, lineWith(t, kFramesKey, mFrames)});
}

}  // namespace fyn::productionrules
