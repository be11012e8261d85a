#pragma once

#include <cstdint>
#include <deque>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "tools/video/camera/Programme.h"
#include "tools/video/camera/SideBySide.h"
#include "tools/video/camera/StatusLine.h"
#include "tools/video/camera/Targets.h"
#include "tools/video/source/CameraInputs.h"
#include "tools/video/source/StageTimes.h"
#include "tools/video/source/VideoInput.h"

namespace fyn::productionrules::video {

/** Under which prb-camera logs. */
inline constexpr const char* kCameraTag = "prb-camera";

struct PlayerOptions {
  /** Where the pictures of the streams go, as `targetOfStream` reads them. */
  std::vector<std::string> outputs;
  /** File of the side-by-side film; empty for none. */
  std::string film;
  /** Gets one JSON line per picture; may be null. */
  std::ostream* journal = nullptr;
  Programme::Complaint complain;
  /** Of the pictures of the streams. */
  cv::Size size{kOutputSize.width, kOutputSize.height};
  /** As Composer has it. */
  double mostEnlarged = 3;
  /** What a device is asked for. */
  DeviceFormat device;
  /** Told of each picture of stream 0; may be null. */
  StatusLine* status = nullptr;
};

/** Reads the cameras' videos and writes what the programme makes of them. */
class Player {
 public:
  /** Raises UsageError when an input or the first output cannot be opened. */
  Player(const std::vector<CameraInput>& cameras, const PlayerOptions& options, const Clock& clock);

  void addScene(const std::string& document, std::optional<std::int64_t> atMs = std::nullopt);

  /** Tells that a frame was taken, before it is shown: what a later scene may have been decided on. */
  void frameTaken(const FrameTime& frame);

  /**
   * Shows a frame: reads its pictures, composes and writes. False when the inputs do not have it. When the
   * number is not after that of the frame before, the videos are read from their start again.
   */
  bool show(const VisionFrame& frame, std::optional<std::int64_t> nextMs);

  /** The two halves of `show`. An input that has ended shows that it has no signal; false when all have. */
  bool read(std::int64_t number);
  void present(const VisionFrame& frame, const std::vector<cv::Mat>& pictures,
               std::optional<std::int64_t> nextMs);
  const std::vector<cv::Mat>& pictures() const { return mRead; }

  /** Passes over the next picture of all files. */
  void skip();

  /** Pictures per second, and whether they come from a device: those of the first camera. */
  double rate() const { return mInputs.front()->rate(); }
  bool isLive() const { return mInputs.front()->isLive(); }

  /** How far the service may zoom in, a whole factor: as much as the cameras' pixels bear. */
  int zoomLimit() const;

  /** Whether a picture may be left out because its time is over. */
  bool mayLeaveOut() const { return mMayLeaveOut; }

  /** Completes all files. */
  void finish();

  std::int64_t shown() const { return mShown; }
  void printTimes(std::ostream& out) const { mTimes.print(out); }

 private:
  void write(const ComposedPicture& composed, const std::vector<ShownHead>& heads,
             const std::vector<cv::Mat>& pictures);
  PictureSink* sinkOf(std::int32_t stream);
  void note(const ComposedPicture& composed, const std::vector<ShownHead>& heads);

  const PlayerOptions mOptions;
  const Clock& mClock;
  std::vector<std::unique_ptr<VideoInput>> mInputs;
  std::vector<cv::Mat> mRead;
  Programme mProgramme;
  bool mMayLeaveOut = true;
  /** Null for a stream that has no place. */
  std::map<std::int32_t, std::unique_ptr<PictureSink>> mSinks;
  std::unique_ptr<PictureSink> mFilm;
  SideBySide mSideBySide;
  StageTimes mTimes;
  std::int64_t mShown = 0;
  /** When the latest frames were taken. */
  std::deque<std::int64_t> mTaken;
};

}  // namespace fyn::productionrules::video
