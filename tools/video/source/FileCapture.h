#pragma once

#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <string>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVPacket;
struct SwsContext;

namespace fyn::productionrules::video {

/**
 * Reads the pictures of a video file in the colours that it is tagged with; one without a tag is taken to be
 * BT.709 when it is of high definition, else BT.601, as players do.
 */
class FileCapture {
 public:
  /** Raises UsageError when `file` cannot be opened as a video. */
  explicit FileCapture(const std::string& file);
  ~FileCapture();
  FileCapture(const FileCapture&) = delete;
  FileCapture& operator=(const FileCapture&) = delete;

  /** The next picture, upright: 8 bits per channel; blue, green, red; until the one after it is read. False
   * at the end. */
  bool next(cv::Mat& picture);

  /** Passes over the next picture. False at the end. */
  bool skip();

  /** Of the upright pictures, as the file says. */
  cv::Size size() const;

  /** Pictures per second as the file says; 0 when it does not. */
  double rate() const;

 private:
  struct Closer {
    void operator()(AVFormatContext* one) const;
    void operator()(AVCodecContext* one) const;
    void operator()(AVPacket* one) const;
    void operator()(AVFrame* one) const;
    void operator()(SwsContext* one) const;
  };
  template <typename Handle>
  using Owned = std::unique_ptr<Handle, Closer>;

  /** Hands the decoder what comes next in the file, or its end. */
  void feedDecoder();
  /** Of the display, in quarters clockwise. */
  int quarterTurns() const;

  Owned<AVFormatContext> mFile;
  Owned<AVCodecContext> mDecoder;
  Owned<AVPacket> mPacket;
  Owned<AVFrame> mFrame;
  Owned<SwsContext> mConverter;
  /** The latest picture, with room beside it. */
  cv::Mat mConverted;
  int mStream = -1;
  int mTurns = 0;
};

}  // namespace fyn::productionrules::video
