#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "model/MLData.h"
#include "platform/ServiceState.h"
#include "tools/feed/DetectorNoise.h"
#include "tools/feed/FeedCameras.h"
#include "tools/feed/FeedFaults.h"
#include "tools/feed/FeedTiming.h"

namespace fyn::productionrules {

/** Looks at what a vision pipeline sends and finds what a service cannot use, or not well. */
class FeedCheck {
 public:
  /** `startedAt` is the wall clock of time 0, in milliseconds since 1970; 0 when it is not known. */
  explicit FeedCheck(std::int64_t startedAt) : mTiming(mFaults, startedAt) {}
  FeedCheck(const FeedCheck&) = delete;
  FeedCheck& operator=(const FeedCheck&) = delete;

  /** The topics that it wants; a message of another one says nothing. */
  static std::vector<std::string> topics();

  /** `t` in milliseconds, never decreasing. */
  void take(std::int64_t t, const std::string& topic, const std::string& message);

  /** Adds the faults that only the whole feed shows. Nothing is taken after it. */
  void finish();

  const FeedFaults& faults() const { return mFaults; }
  const FeedTiming& timing() const { return mTiming; }
  const FeedCameras& cameras() const { return mCameras; }
  DetectorNoise::Figures noise() const { return mNoise.figures(); }

  /** Vision results that came, those that a service drops among them. */
  std::uint64_t results() const { return mResults; }
  std::uint64_t dropped() const { return mDropped; }

  /** What the heads of a camera are like. */
  struct CameraHeads {
    std::int64_t firstAt = 0;
    /** In tenths of a per cent of the image's height. */
    Distribution heights;
    /** Of those that reach out of an image whose size no document had told by then. */
    std::uint64_t outsideAssumed = 0;
    std::string outside;
  };
  const std::map<std::int32_t, CameraHeads>& heads() const { return mHeads; }
  /** The most people in one result. */
  std::size_t mostPeople() const { return mMostPeople; }

 private:
  void takeCameras(std::int64_t t, const std::string& topic, const std::string& message);
  void takeResult(std::int64_t t, const std::string& message);
  void takeHead(std::int64_t t, std::int32_t person, const Head& head);
  void lookForDoubleHeads(std::int64_t t, const nlohmann::json& document);
  void lookForImage(std::int64_t t, std::int32_t camera, const Rect& box);
  bool isAsPublished(std::int64_t t, const std::string& topic, const std::string& schema,
                     const nlohmann::json& document);
  /** Nothing when the service drops it. */
  std::optional<MLData> asTheServiceReads(const nlohmann::json& document);

  FeedFaults mFaults;
  FeedTiming mTiming;
  FeedCameras mCameras;
  DetectorNoise mNoise;
  /** What the service's own reader logs is not for the user. */
  std::shared_ptr<ServiceState> mSilent = std::make_shared<ServiceState>();
  std::uint64_t mResults = 0;
  std::uint64_t mDropped = 0;
  std::size_t mMostPeople = 0;
  std::map<std::int32_t, CameraHeads> mHeads;
};

}  // namespace fyn::productionrules
