#include "tools/view/EngineLines.h"

#include "geometry/FrameShapes.h"
#include "geometry/OffCenter.h"
#include "output/JsonLayoutBuilder.h"
#include "platform/Topics.h"
#include "tools/replay/EffectWriter.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kFramesKey = "frames";

std::string lineStart(std::int64_t t, const char* key) {
  return "{\"t\":" + std::to_string(t) + ",\"" + key + "\":";
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

void appendNumber(std::string& text, const char* key, std::int64_t value) {
  text.append("\"").append(key).append("\":").append(std::to_string(value));
}

void appendBox(std::string& text, const char* key, const Rect& box) {
  text.append(",\"").append(key).append("\":{");
  appendNumber(text, "left", box.left);
  appendNumber(text.append(","), "top", box.top);
  appendNumber(text.append(","), "right", box.right);
  appendNumber(text.append(","), "bottom", box.bottom);
  text.append("}");
}

void appendFrame(std::string& text, const Layout& layout, const Frame& frame) {
  text.append(text.back() == '[' ? "{" : ",{");
  appendNumber(text, "stream", layout.streamId);
  appendNumber(text.append(","), "frameindex", frame.frameIndex);
  if (frame.detectionBoundary.right > frame.detectionBoundary.left) {
    appendBox(text, "detectionBoundary", frame.detectionBoundary);
  }
  if (hasOffCenterBound(frame)) {
    appendBox(text, "offCenterBound", calculateOffcenterFrameBound(frame.source, frame.frameLayout));
  }
  text.append(",\"headPosition\":\"").append(headPositionText(frame.headPosition)).append("\",\"heads\":[");
  for (const std::int64_t id : frame.fynHeads) {
    text.append(text.back() == '[' ? "" : ",").append(std::to_string(id));
  }
  text.append("]}");
}

}  // namespace

void EngineLines::onDecision(const LayoutDecision& decision) {
  const std::int64_t t = mNow();
  mSink.put(
      {t, LineWorth::Kept,
       std::string("decision/") + std::to_string(decision.streamId) + '/' + decisionKindText(decision.kind),
       lineStart(t, "decision") + decisionJson(decision) + '}'});
}

void EngineLines::look(ProductionRuleIPCService& service) {
  const std::shared_ptr<BaseLayout> engine = service.trackingMode().getFramingLayout();
  if (engine == nullptr) {
    return;
  }
  const Layouts current = engine->getFinalLayoutPtrs();
  if (mWritesWaits) {
    writeWaits(current, engine->getNextLayoutPtrs());
  }
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
  std::string frames = "[";
  for (const std::shared_ptr<Layout>& layout : current) {
    if (layout != nullptr) {
      for (const Frame& frame : layout->frames) {
        appendFrame(frames, *layout, frame);
      }
    }
  }
  frames += ']';
  if (frames == mFrames) {
    return;
  }
  mFrames = std::move(frames);
  const std::int64_t t = mNow();
  mSink.put({t, LineWorth::Replaceable, kFramesKey, lineStart(t, kFramesKey) + mFrames + '}'});
}

}  // namespace fyn::productionrules
