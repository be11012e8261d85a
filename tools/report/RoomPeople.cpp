#include "tools/report/RoomPeople.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "model/MLData.h"

namespace fyn::productionrules {

namespace {

/** Ascending by id; of two with one id the first counts, and nobody without a box. */
std::vector<PersonState> ordered(std::vector<PersonState> people) {
  const auto hasNoBox = [](const PersonState& person) {
    return std::none_of(person.heads.begin(), person.heads.end(), [](const CameraHead& head) {
      return head.box.right > head.box.left && head.box.bottom > head.box.top;
    });
  };
  std::stable_sort(people.begin(), people.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
  people.erase(
      std::unique(people.begin(), people.end(), [](const auto& a, const auto& b) { return a.id == b.id; }),
      people.end());
  people.erase(std::remove_if(people.begin(), people.end(), hasNoBox), people.end());
  return people;
}

}  // namespace

std::vector<PersonState> peopleOf(const Truth& truth) {
  std::vector<PersonState> states;
  states.reserve(truth.heads.size());
  for (const TrueHead& head : truth.heads) {
    auto person = std::find_if(states.begin(), states.end(),
                               [&head](const PersonState& known) { return known.id == head.id; });
    if (person == states.end()) {
      person = states.emplace(person);
      person->id = head.id;
    }
    person->speaks = person->speaks || head.speaks;
    person->heads.push_back({static_cast<std::uint32_t>(head.fynCamId), head.bbox});
  }
  return ordered(std::move(states));
}

std::vector<PersonState> peopleSeen(const BusMessage& result, VisionResultReader& reader) {
  std::vector<PersonState> states;
  std::shared_ptr<MLData> data;
  try {
    data = reader.read(result.payload);
  } catch (const nlohmann::json::exception&) {
    return states;
  }
  for (const std::shared_ptr<FynHead>& person : data->getHeads()) {
    PersonState state;
    state.id = person->id;
    for (const auto& [camera, head] : person->mCamIdAssocHeadMap) {
      state.speaks = state.speaks || head->isSpeaker;
      state.heads.push_back({camera, head->bbox});
    }
    states.push_back(std::move(state));
  }
  return ordered(std::move(states));
}

}  // namespace fyn::productionrules
