#include "tools/video/camera/Programme.h"

#include <limits>
#include <utility>

namespace fyn::productionrules::video {

namespace {

// Stands for documents among the streams' numbers.
constexpr std::int64_t kDocuments = std::numeric_limits<std::int64_t>::min();

// Each stream costs an output; a document that asks for more is wrong.
constexpr std::size_t kMostStreams = 16;

// After more it may tell one a second time.
constexpr std::size_t kMostFaults = 100;

// Only timestamps that are wrong let so many wait.
constexpr std::size_t kMostPending = 1000;

}  // namespace

Programme::Programme(cv::Size size, std::size_t cameras, Complaint complain, double mostEnlarged)
    : mSize(size), mCameras(cameras), mComplain(std::move(complain)), mMostEnlarged(mostEnlarged) {
  mStreams.emplace(0, Stream{Composer(mSize, mCameras, mMostEnlarged), {}, {}, {}});
}

std::optional<std::int64_t> Programme::add(const std::string& document, std::optional<std::int64_t> atMs) {
  std::optional<std::int64_t> first;
  try {
    for (StreamScene& scene : parseSceneDocument(document)) {
      scene.timestampMs = atMs.value_or(scene.timestampMs);
      first = first.value_or(scene.timestampMs);
      if (mPending.size() == kMostPending) {
        mPending.pop_front();
      }
      mPending.push_back(std::move(scene));
    }
    mFaults.erase(kDocuments);
  } catch (const SceneFault& fault) {
    complainOnce(kDocuments, fault.what(), "");
  }
  return first;
}

void Programme::compose(const std::vector<cv::Mat>& pictures, const FrameTime& frame,
                        std::optional<std::int64_t> nextMs,
                        const std::function<void(const ComposedPicture&)>& show) {
  while (!mPending.empty() && (!nextMs || mPending.front().timestampMs < *nextMs)) {
    begin(mPending.front(), frame.timestampMs);
    mPending.pop_front();
  }
  for (auto& [id, stream] : mStreams) {
    show({id, frame, stream.sceneNumber, stream.mode, stream.tiles,
          stream.composer.compose(pictures, frame.timestampMs)});
  }
}

void Programme::begin(const StreamScene& scene, std::int64_t nowMs) {
  try {
    const auto known = mStreams.find(scene.id);
    if (known != mStreams.end()) {
      known->second.composer.show(scene, nowMs);
      known->second.sceneNumber = scene.sceneNumber;
      known->second.mode = scene.mode;
      known->second.tiles = scene.tiles;
    } else if (mStreams.size() < kMostStreams) {
      Stream stream{Composer(mSize, mCameras, mMostEnlarged), scene.sceneNumber, scene.mode, scene.tiles};
      StreamScene first = scene;
      first.animation = "cut";
      stream.composer.show(first, nowMs);
      mStreams.emplace(scene.id, std::move(stream));
    } else {
      throw SceneFault("more than " + std::to_string(kMostStreams) + " streams");
    }
    mFaults.erase(scene.id);
  } catch (const SceneFault& fault) {
    complainOnce(
        scene.id, fault.what(),
        "stream " + std::to_string(scene.id) + ", scene " + std::to_string(scene.sceneNumber) + ": ");
  }
}

void Programme::complainOnce(std::int64_t about, const std::string& fault, const std::string& where) {
  if (mFaults.size() == kMostFaults) {
    mFaults.clear();
  }
  std::string& last = mFaults[about];
  if (last != fault) {
    last = fault;
    mComplain(where + fault);
  }
}

}  // namespace fyn::productionrules::video
