#include "tools/video/camera/Player.h"

#include <algorithm>
#include <ostream>

namespace fyn::productionrules::video {

namespace {

constexpr std::size_t kFramesToRemember = 300;

std::vector<std::unique_ptr<VideoInput>> open(const std::vector<CameraInput>& cameras,
                                              const DeviceFormat& device) {
  std::vector<std::unique_ptr<VideoInput>> inputs;
  inputs.reserve(cameras.size());
  for (const CameraInput& camera : cameras) {
    inputs.push_back(std::make_unique<VideoInput>(camera.input, device));
  }
  return inputs;
}

}  // namespace

Player::Player(const std::vector<CameraInput>& cameras, const PlayerOptions& options, const Clock& clock)
    : mOptions(options),
      mClock(clock),
      mInputs(open(cameras, options.device)),
      mRead(cameras.size()),
      mProgramme(options.size, cameras.size(), options.complain, options.mostEnlarged) {
  for (const std::string& target : options.outputs) {
    mMayLeaveOut = mMayLeaveOut && !keepsEveryPicture(target);
  }
  // At once, so that a wrong name is told at the start.
  sinkOf(0);
  if (!options.film.empty()) {
    mMayLeaveOut = false;
    mFilm = openTarget(options.film, {{kFilmWidth, kFilmHeight}, rate()});
  }
}

int Player::zoomLimit() const {
  int narrowest = mInputs.front()->width();
  for (const auto& input : mInputs) {
    narrowest = std::min(narrowest, input->width());
  }
  return std::max(1, static_cast<int>(narrowest * mOptions.mostEnlarged / mOptions.size.width));
}

void Player::addScene(const std::string& document, std::optional<std::int64_t> atMs) {
  const std::optional<std::int64_t> decided = mProgramme.add(document, atMs);
  const auto later = std::upper_bound(mTaken.begin(), mTaken.end(), decided.value_or(0));
  if (decided && !atMs && later != mTaken.begin()) {
    mTimes.add("frame to its scene", static_cast<double>(mClock.wallMs() - *std::prev(later)));
  }
}

void Player::frameTaken(const FrameTime& frame) {
  if (!mTaken.empty() && frame.timestampMs < mTaken.back()) {
    mTaken.clear();
  }
  mTaken.push_back(frame.timestampMs);
  if (mTaken.size() > kFramesToRemember) {
    mTaken.pop_front();
  }
}

bool Player::show(const VisionFrame& frame, std::optional<std::int64_t> nextMs) {
  if (!read(frame.time.number)) {
    return false;
  }
  present(frame, mRead, nextMs);
  return true;
}

void Player::present(const VisionFrame& frame, const std::vector<cv::Mat>& pictures,
                     std::optional<std::int64_t> nextMs) {
  const StageTimes::Clock::time_point start = StageTimes::Clock::now();
  double spentWriting = 0;
  mProgramme.compose(pictures, frame.time, nextMs, [&](const ComposedPicture& composed) {
    const StageTimes::Clock::time_point composedAt = StageTimes::Clock::now();
    write(composed, frame.heads, pictures);
    spentWriting += std::chrono::duration<double, std::milli>(StageTimes::Clock::now() - composedAt).count();
  });
  const double whole = std::chrono::duration<double, std::milli>(StageTimes::Clock::now() - start).count();
  mTimes.add("compose", whole - spentWriting);
  mTimes.add("write", spentWriting);
  ++mShown;
}

void Player::skip() {
  for (const auto& input : mInputs) {
    input->skip();
  }
}

bool Player::read(std::int64_t number) {
  const StageTimes::Span span(mTimes, "read");
  bool isAnyThere = false;
  for (std::size_t camera = 0; camera < mInputs.size(); ++camera) {
    VideoInput& input = *mInputs[camera];
    if (!input.isLive()) {
      if (number <= input.position()) {
        input.rewind();
      }
      while (input.position() + 1 < number && input.skip()) {
      }
    }
    const bool isThere = input.next(mRead[camera]);
    if (!isThere) {
      mRead[camera] = noSignal();
    }
    isAnyThere = isAnyThere || isThere;
  }
  return isAnyThere;
}

void Player::write(const ComposedPicture& composed, const std::vector<ShownHead>& heads,
                   const std::vector<cv::Mat>& pictures) {
  if (PictureSink* const sink = sinkOf(composed.stream)) {
    sink->write(composed.picture);
  }
  if (composed.stream == 0 && mFilm) {
    mFilm->write(mSideBySide.draw(pictures, heads, composed));
  }
  note(composed, heads);
}

PictureSink* Player::sinkOf(std::int32_t stream) {
  const auto known = mSinks.find(stream);
  if (known != mSinks.end()) {
    return known->second.get();
  }
  std::unique_ptr<PictureSink>& sink = mSinks[stream];
  const std::string target =
      stream < 0 ? "" : targetOfStream(mOptions.outputs, static_cast<std::size_t>(stream));
  if (target.empty()) {
    mOptions.complain("stream " + std::to_string(stream) + " has no output: name one with --output");
  } else {
    sink = openTarget(target, {mOptions.size, rate()});
  }
  return sink.get();
}

void Player::note(const ComposedPicture& composed, const std::vector<ShownHead>& heads) {
  const std::int64_t now = mClock.wallMs();
  // Offline nobody tells of frames, and their time has nothing to do with the wall clock.
  if (composed.stream == 0 && !mTaken.empty()) {
    mTimes.add("frame to its picture", static_cast<double>(now - composed.frame.timestampMs));
    if (mOptions.status != nullptr) {
      mOptions.status->shown(composed, heads, now - composed.frame.timestampMs);
    }
  }
  if (mOptions.journal != nullptr) {
    *mOptions.journal << R"({"stream":)" << composed.stream << R"(,"frame":)" << composed.frame.number
                      << R"(,"timestamp":)" << composed.frame.timestampMs << R"(,"scene":)"
                      << (composed.sceneNumber ? std::to_string(*composed.sceneNumber) : "null")
                      << R"(,"written":)" << now << '}' << std::endl;
  }
}

void Player::finish() {
  for (const auto& [stream, sink] : mSinks) {
    if (sink) {
      sink->finish();
    }
  }
  if (mFilm) {
    mFilm->finish();
  }
}

}  // namespace fyn::productionrules::video
