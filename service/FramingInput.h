#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/VisionResultReader.h"
#include "platform/FynFrameTracker.h"
#include "service/FynFileWriter.h"
#include "service/TrackingModes.h"

namespace fyn::productionrules {

/** Feeds the active tracking mode: with vision results and, on a secondary device, with the layouts of its
 * primary. Makes it send what comes of a result. */
class FramingInput {
 public:
  /** Both must outlive it. */
  FramingInput(const Platform& platform, TrackingModes& modes) : mPlatform(platform), mModes(modes) {}

  void setReader(std::shared_ptr<VisionResultReader> reader) { mReader = std::move(reader); }

  void handleVisionResult(const std::string& msg);
  void handleSecondaryLayout(const std::string& msg);

  /** From now on layouts go out as debug documents only, and where the configuration asks for it the state of
   * the engine goes into a file. */
  void dumpDebug();

  /** While somebody records, an unchanged layout is sent now and then as well, as a debug document. */
  void setRecording(bool isRecording) { mRecording = isRecording; }

 private:
  std::shared_ptr<MLData> getMLData(const std::string& msg) { return mReader->read(msg); }
  void processMlData(const std::shared_ptr<MLData>& mlData);
  void sendPeriodically();
  std::vector<std::shared_ptr<Layout>> getSecondaryLayoutData(const std::string& msg) const;
  void processSecondaryLayout(const std::vector<std::shared_ptr<Layout>>& layouts);

  const Platform& mPlatform;
  TrackingModes& mModes;
  std::shared_ptr<VisionResultReader> mReader = std::make_shared<VisionResultReader>();
  FynFrameTracker mFrameTracker;
  std::optional<FynFileWriter> mFileWriter;
  bool mDebug = false;
  bool mRecording = false;
};

}  // namespace fyn::productionrules
