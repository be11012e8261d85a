#include "benchmarks/Meeting.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace fyn::productionrules::bench {

namespace {

constexpr int kColumns = 16;
constexpr int kRowWidth = 1200;
constexpr int kRowHeight = 160;
constexpr int kHeadWidth = 50;
constexpr int kHeadHeight = 60;

nlohmann::ordered_json rect(int left, int top) {
  return {{"left", left}, {"top", top}, {"right", left + kHeadWidth}, {"bottom", top + kHeadHeight}};
}

}  // namespace

std::string visionResult(int persons, const Moment& moment) {
  const int columnWidth = kRowWidth / std::min(persons, kColumns);
  nlohmann::ordered_json heads = nlohmann::ordered_json::array();
  for (int place = 0; place < persons; ++place) {
    const int person = 1 + (moment.isSwapped ? place ^ 1 : place);
    const int left = 20 + place % kColumns * columnWidth + moment.shift;
    const int top = 40 + place / kColumns * kRowHeight;
    heads.push_back({{"fynId", person},
                     {"associatedHeads",
                      {{{"id", person},
                        {"camId", 0},
                        {"isSpeaker", place == 0},
                        {"bbox", rect(left, top)},
                        {"yaw", 12.5},
                        {"pitch", 3},
                        {"qfactor", 1},
                        {"score", 0.97}}}}});
  }
  return nlohmann::ordered_json{{"timestamp", 33}, {"frameNumber", 1}, {"heads", heads}}.dump();
}

}  // namespace fyn::productionrules::bench
