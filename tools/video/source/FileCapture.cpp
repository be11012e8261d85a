#include "tools/video/source/FileCapture.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libswscale/swscale.h>
}

#include <cmath>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

// Pixels that the converter takes at once, at most.
constexpr int kVector = 16;

// Full range, unchanged brightness, contrast and saturation.
constexpr int kFull = 1;
constexpr int kUnchanged = 1 << 16;

int matrixOf(const AVFrame& frame) {
  if (frame.colorspace != AVCOL_SPC_UNSPECIFIED) {
    return frame.colorspace;
  }
  return frame.width >= 1280 || frame.height > 576 ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

}  // namespace

void FileCapture::Closer::operator()(AVFormatContext* one) const {
  avformat_close_input(&one);
}
void FileCapture::Closer::operator()(AVCodecContext* one) const {
  avcodec_free_context(&one);
}
void FileCapture::Closer::operator()(AVPacket* one) const {
  av_packet_free(&one);
}
void FileCapture::Closer::operator()(AVFrame* one) const {
  av_frame_free(&one);
}
void FileCapture::Closer::operator()(SwsContext* one) const {
  sws_freeContext(one);
}

FileCapture::FileCapture(const std::string& file) : mPacket(av_packet_alloc()), mFrame(av_frame_alloc()) {
  AVFormatContext* opened = nullptr;
  const AVCodec* codec = nullptr;
  if (avformat_open_input(&opened, file.c_str(), nullptr, nullptr) == 0) {
    mFile.reset(opened);
    if (avformat_find_stream_info(opened, nullptr) >= 0) {
      mStream = av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    }
  }
  if (mStream >= 0) {
    mDecoder.reset(avcodec_alloc_context3(codec));
    avcodec_parameters_to_context(mDecoder.get(), mFile->streams[mStream]->codecpar);
    // As many as there are processors.
    mDecoder->thread_count = 0;
  }
  if (!mDecoder || avcodec_open2(mDecoder.get(), codec, nullptr) != 0) {
    throw UsageError(file + ": cannot be opened as a video");
  }
  mTurns = quarterTurns();
}

FileCapture::~FileCapture() = default;

bool FileCapture::next(cv::Mat& picture) {
  if (!skip()) {
    return false;
  }
  const cv::Size size(mFrame->width, mFrame->height);
  const auto format = static_cast<AVPixelFormat>(mFrame->format);
  // The quick way leaves out the last pixels of a row that does not end with a vector of them.
  const int way = size.width % kVector == 0 ? SWS_BICUBIC : SWS_BICUBIC | SWS_ACCURATE_RND;
  mConverter.reset(sws_getCachedContext(mConverter.release(), size.width, size.height, format, size.width,
                                        size.height, AV_PIX_FMT_BGR24, way, nullptr, nullptr, nullptr));
  if (!mConverter) {
    return false;
  }
  sws_setColorspaceDetails(mConverter.get(), sws_getCoefficients(matrixOf(*mFrame)),
                           mFrame->color_range == AVCOL_RANGE_JPEG ? kFull : 0,
                           sws_getCoefficients(SWS_CS_DEFAULT), kFull, 0, kUnchanged, kUnchanged);
  // Both ways write whole vectors.
  mConverted.create(size.height, (size.width / kVector + 2) * kVector, CV_8UC3);
  std::uint8_t* const rows[4] = {mConverted.data};
  const int strides[4] = {static_cast<int>(mConverted.step)};
  sws_scale(mConverter.get(), mFrame->data, mFrame->linesize, 0, size.height, rows, strides);
  picture = mConverted({{0, 0}, size});
  if (mTurns != 0) {
    cv::rotate(picture, picture, mTurns - 1);
  }
  return true;
}

bool FileCapture::skip() {
  int received = avcodec_receive_frame(mDecoder.get(), mFrame.get());
  while (received == AVERROR(EAGAIN)) {
    feedDecoder();
    received = avcodec_receive_frame(mDecoder.get(), mFrame.get());
  }
  return received == 0;
}

void FileCapture::feedDecoder() {
  if (av_read_frame(mFile.get(), mPacket.get()) < 0) {
    avcodec_send_packet(mDecoder.get(), nullptr);
    return;
  }
  if (mPacket->stream_index == mStream) {
    avcodec_send_packet(mDecoder.get(), mPacket.get());
  }
  av_packet_unref(mPacket.get());
}

cv::Size FileCapture::size() const {
  const AVCodecParameters& about = *mFile->streams[mStream]->codecpar;
  return mTurns % 2 == 0 ? cv::Size(about.width, about.height) : cv::Size(about.height, about.width);
}

double FileCapture::rate() const {
  const AVRational rate = av_guess_frame_rate(mFile.get(), mFile->streams[mStream], nullptr);
  return rate.den > 0 ? av_q2d(rate) : 0;
}

int FileCapture::quarterTurns() const {
  const std::uint8_t* const matrix =
      av_stream_get_side_data(mFile->streams[mStream], AV_PKT_DATA_DISPLAYMATRIX, nullptr);
  if (matrix == nullptr) {
    return 0;
  }
  const double degrees = -av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
  return std::isfinite(degrees) ? static_cast<int>(std::lround(degrees / 90) % 4 + 4) % 4 : 0;
}

}  // namespace fyn::productionrules::video
