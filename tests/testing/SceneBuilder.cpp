#include "tests/testing/SceneBuilder.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace fyn::productionrules::testing {

namespace {

Rect around(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
  const std::int32_t left = x - width / 2;
  const std::int32_t top = y - height / 2;
  return {left, top, left + width, top + height};
}

nlohmann::json rectJson(const Rect& rect) {
  return {{"left", rect.left}, {"top", rect.top}, {"right", rect.right}, {"bottom", rect.bottom}};
}

}  // namespace

Scene& Scene::person(std::int32_t id) {
  mPersons.push_back({id, {HeadEntry{}}});
  head().id = id;
  head().box = around(0, 0, kHeadWidth, kHeadHeight);
  return *this;
}

Scene& Scene::camera(std::int32_t camId) {
  if (head().placed) {
    HeadEntry next;
    next.id = mPersons.back().id;
    next.box = around(0, 0, kHeadWidth, kHeadHeight);
    mPersons.back().heads.push_back(next);
  }
  head().camId = camId;
  return *this;
}

Scene& Scene::at(std::int32_t x, std::int32_t y) {
  const Rect& box = head().box;
  head().box = around(x, y, box.right - box.left, box.bottom - box.top);
  head().placed = true;
  return *this;
}

Scene& Scene::sized(std::int32_t width, std::int32_t height) {
  const Rect& box = head().box;
  head().box = around((box.left + box.right) / 2, (box.top + box.bottom) / 2, width, height);
  return *this;
}

Scene& Scene::box(const Rect& rect) {
  head().box = rect;
  head().placed = true;
  return *this;
}

Scene& Scene::ssb(const Rect& rect) {
  head().selectionBox = rect;
  return *this;
}

Scene& Scene::speaking(bool speaks) {
  head().speaks = speaks;
  return *this;
}

Scene& Scene::yaw(double degrees) {
  head().yaw = degrees;
  return *this;
}

Scene& Scene::qfactor(std::uint32_t rank) {
  head().rank = rank;
  return *this;
}

Scene& Scene::headId(std::int64_t id) {
  head().id = id;
  return *this;
}

Scene& Scene::frameNumber(std::int64_t number) {
  mFrameNumber = number;
  return *this;
}

Scene Scene::reversed() const {
  Scene other = *this;
  std::reverse(other.mPersons.begin(), other.mPersons.end());
  return other;
}

nlohmann::json Scene::json() const {
  nlohmann::json persons = nlohmann::json::array();
  for (const PersonEntry& person : mPersons) {
    nlohmann::json heads = nlohmann::json::array();
    for (const HeadEntry& entry : person.heads) {
      // Without "fynCamId", because with it a reader does not look at the rank.
      nlohmann::json document{
          {"id", entry.id},        {"camId", entry.camId},      {"yaw", entry.yaw},
          {"qfactor", entry.rank}, {"isSpeaker", entry.speaks}, {"bbox", rectJson(entry.box)}};
      if (!isZeroRect(entry.selectionBox)) {
        document["ssb"] = rectJson(entry.selectionBox);
      }
      heads.push_back(std::move(document));
    }
    persons.push_back({{"fynId", person.id}, {"associatedHeads", std::move(heads)}});
  }
  return {{"frameNumber", mFrameNumber}, {"timestamp", 0}, {"heads", std::move(persons)}};
}

std::string Scene::text() const {
  return json().dump();
}

std::shared_ptr<MLData> Scene::mlData() const {
  auto data = std::make_shared<MLData>();
  data->from_json(json());
  return data;
}

}  // namespace fyn::productionrules::testing
