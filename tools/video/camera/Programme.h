#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/video/compose/Composer.h"

namespace fyn::productionrules::video {

/** A picture of the cameras: its number, from 1, and when it was taken, wall clock in milliseconds. */
struct FrameTime {
  std::int64_t number = 0;
  std::int64_t timestampMs = 0;
};

/** One output picture. */
struct ComposedPicture {
  std::int32_t stream = 0;
  FrameTime frame;
  /** The last scene that it shows; nothing before the first. */
  std::optional<std::int64_t> sceneNumber;
  /** The service's mode for that scene, and its tiles. */
  const std::string& mode;
  const std::vector<SceneTile>& tiles;
  /** Stands until the next picture is composed. */
  const cv::Mat& picture;
};

/**
 * What is on: takes scene documents as they come, and composes the picture of every stream. A scene begins
 * with the frame whose vision result it was decided on: the last one taken before the scene's timestamp; or,
 * when that frame is composed already, with the next. Stream 0 is there from the start, others from their
 * first scene. What cannot be shown is told once and leaves its stream as it is.
 */
class Programme {
 public:
  using Complaint = std::function<void(const std::string&)>;

  /** `size` of the outputs in pixels; `cameras`: how many there are; `complain` gets one line per fault;
   * `mostEnlarged` as Composer has it. */
  Programme(cv::Size size, std::size_t cameras, Complaint complain, double mostEnlarged);

  /**
   * `atMs` stands for the timestamps in the document, when given. Returns the timestamp of the first stream;
   * nothing when the document cannot be read or has none.
   */
  std::optional<std::int64_t> add(const std::string& document,
                                  std::optional<std::int64_t> atMs = std::nullopt);

  /**
   * Composes `frame` of all streams, in the order of their ids, and gives each to `show`. `nextMs`: when the
   * frame after it was taken, if that is known; without it every scene counts that has come.
   */
  void compose(const std::vector<cv::Mat>& pictures, const FrameTime& frame,
               std::optional<std::int64_t> nextMs, const std::function<void(const ComposedPicture&)>& show);

 private:
  struct Stream {
    Composer composer;
    std::optional<std::int64_t> sceneNumber;
    std::string mode;
    std::vector<SceneTile> tiles;
  };

  void begin(const StreamScene& scene, std::int64_t nowMs);
  void complainOnce(std::int64_t about, const std::string& fault, const std::string& where);

  const cv::Size mSize;
  const std::size_t mCameras;
  const Complaint mComplain;
  const double mMostEnlarged;
  std::deque<StreamScene> mPending;
  std::map<std::int32_t, Stream> mStreams;
  /** The last fault of each stream, and of documents, until something of it can be shown. */
  std::map<std::int64_t, std::string> mFaults;
};

}  // namespace fyn::productionrules::video
