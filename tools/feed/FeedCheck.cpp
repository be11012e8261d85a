#include "tools/feed/FeedCheck.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "model/JsonNumber.h"
#include "platform/ServiceStateScope.h"
#include "platform/Topics.h"
#include "tools/feed/SchemaCheck.h"

namespace fyn::productionrules {

namespace {

/** More than any room has. */
constexpr std::size_t kMostCameras = 64;

std::string boxText(const Rect& box) {
  return std::to_string(box.left) + ',' + std::to_string(box.top) + " to " + std::to_string(box.right) + ',' +
         std::to_string(box.bottom);
}

std::string outsideText(std::int32_t camera, const Dimension& image) {
  return "a bbox reaches out of the image of camera " + std::to_string(camera) + ", " +
         std::to_string(image.width) + " x " + std::to_string(image.height);
}

}  // namespace

std::vector<std::string> FeedCheck::topics() {
  std::vector<std::string> wanted;
  for (const std::string_view topic :
       {topics::kVisionResult, topics::kCamera, topics::kCameras, topics::kCameraParametersHead}) {
    wanted.emplace_back(topic);
  }
  return wanted;
}

void FeedCheck::take(std::int64_t t, const std::string& topic, const std::string& message) {
  if (topic == topics::kVisionResult) {
    takeResult(t, message);
  } else if (!FeedCameras::schemaOf(topic).empty()) {
    takeCameras(t, topic, message);
  }
}

void FeedCheck::takeCameras(std::int64_t t, const std::string& topic, const std::string& message) {
  const nlohmann::json document = nlohmann::json::parse(message, nullptr, false);
  if (isAsPublished(t, topic, FeedCameras::schemaOf(topic), document)) {
    mCameras.take(topic, document);
  }
}

void FeedCheck::takeResult(std::int64_t t, const std::string& message) {
  ++mResults;
  const nlohmann::json document = nlohmann::json::parse(message, nullptr, false);
  const bool isGood = isAsPublished(t, std::string(topics::kVisionResult), "vision-result.json", document);
  const std::optional<MLData> result = asTheServiceReads(document);
  if (!result) {
    ++mDropped;
    mTiming.skip();
    return;
  }
  mTiming.take(t, result->frameNumber,
               document.contains("timestamp") ? std::optional(result->timestamp) : std::nullopt);
  mMostPeople = std::max(mMostPeople, result->heads.size());
  std::set<std::int32_t> numbers;
  for (const std::shared_ptr<FynHead>& person : result->heads) {
    if (!numbers.insert(person->id).second) {
      mFaults.add(t, "two persons of one result have the same fynId", std::to_string(person->id));
      continue;
    }
    for (const auto& [camera, head] : person->mCamIdAssocHeadMap) {
      takeHead(t, person->id, *head);
    }
  }
  if (isGood) {
    lookForDoubleHeads(t, document);
  }
  mNoise.endResult(t);
}

void FeedCheck::lookForDoubleHeads(std::int64_t t, const nlohmann::json& document) {
  for (const nlohmann::json& person : document.at("heads")) {
    std::set<std::int32_t> cameras;
    for (const nlohmann::json& head : person.at("associatedHeads")) {
      if (!cameras.insert(fields::toInt32(head.at("camId"))).second) {
        mFaults.add(t, "a person has two heads in one camera; the first counts",
                    "person " + person.at("fynId").dump() + ", camera " + head.at("camId").dump());
      }
    }
  }
}

void FeedCheck::takeHead(std::int64_t t, std::int32_t person, const Head& head) {
  const std::int32_t camera = head.camId;
  const Rect& box = head.bbox;
  if (camera < 0 || isZeroRect(box)) {
    return;  // left out
  }
  if (box.right <= box.left || box.bottom <= box.top) {
    mFaults.add(t, "a bbox is empty or upside down",
                "camera " + std::to_string(camera) + ": " + boxText(box));
  } else if (mHeads.count(camera) == 0 && mHeads.size() == kMostCameras) {
    mFaults.add(t, "heads of more than " + std::to_string(kMostCameras) + " cameras");
  } else {
    CameraHeads& heads = mHeads.try_emplace(camera, CameraHeads{t, {}, 0, ""}).first->second;
    constexpr std::int64_t kTenthsOfAPercent = 1000;
    const std::int64_t imageHeight = mCameras.imageSize(camera).height;
    const std::int64_t height = std::min(std::int64_t{box.bottom} - box.top, imageHeight);
    heads.heights.add(height * kTenthsOfAPercent / imageHeight);
    lookForImage(t, camera, box);
    mNoise.see(t, camera, person, box);
  }
}

// A bus does not keep camera documents, so they may come later than heads.
void FeedCheck::lookForImage(std::int64_t t, std::int32_t camera, const Rect& box) {
  const Dimension image = mCameras.imageSize(camera);
  if (box.left >= 0 && box.top >= 0 && box.right <= image.width && box.bottom <= image.height) {
    return;
  }
  if (mCameras.isSizeTold(camera)) {
    mFaults.add(t, outsideText(camera, image), boxText(box));
    return;
  }
  CameraHeads& heads = mHeads.at(camera);
  if (heads.outsideAssumed++ == 0) {
    heads.outside = boxText(box);
  }
}

bool FeedCheck::isAsPublished(std::int64_t t, const std::string& topic, const std::string& schema,
                              const nlohmann::json& document) {
  if (document.is_discarded()) {
    mFaults.add(t, topic + ": not JSON");
    return false;
  }
  const std::vector<std::string> found = schemaFaults(schema, document);
  const std::string prefix = topic + ": ";
  for (const std::string& fault : std::set<std::string>(found.begin(), found.end())) {
    std::string text = prefix;
    mFaults.add(t, text.append(fault));
  }
  return found.empty();
}

std::optional<MLData> FeedCheck::asTheServiceReads(const nlohmann::json& document) {
  const ServiceStateScope scope(mSilent);
  mSilent->setLogLevel(0);
  try {
    MLData result;
    result.from_json(document);
    return result;
  } catch (const nlohmann::json::exception&) {
    return std::nullopt;
  }
}

void FeedCheck::finish() {
  if (mResults == 0) {
    mFaults.add(0, "no vision result has come on " + std::string(topics::kVisionResult));
  }
  for (const auto& [camera, heads] : mHeads) {
    if (mCameras.areTold() && !mCameras.isTold(camera)) {
      mFaults.add(heads.firstAt,
                  "heads of camera " + std::to_string(camera) + ", which no camera document names");
    }
    if (heads.outsideAssumed > 0 && !mCameras.isSizeTold(camera)) {
      mFaults.add(
          {outsideText(camera, mCameras.imageSize(camera)) + ", which is assumed: no document told its size",
           heads.outsideAssumed, heads.firstAt, heads.outside});
    }
  }
  mTiming.finish();
}

}  // namespace fyn::productionrules
