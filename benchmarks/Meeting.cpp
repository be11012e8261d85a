#include "benchmarks/Meeting.h"

#include <nlohmann/json.hpp>

namespace fyn::productionrules::bench {

namespace {

constexpr int kColumns = 16;
constexpr int kColumnWidth = 75;
constexpr int kRowHeight = 160;
constexpr int kHeadWidth = 50;
constexpr int kHeadHeight = 60;

nlohmann::ordered_json rect(int left, int top) {
  return {{"left", left}, {"top", top}, {"right", left + kHeadWidth}, {"bottom", top + kHeadHeight}};
}

}  // namespace

std::string visionResult(int persons, int frameNumber, int shift) {
  nlohmann::ordered_json heads = nlohmann::ordered_json::array();
  for (int person = 1; person <= persons; ++person) {
    const int left = 20 + (person - 1) % kColumns * kColumnWidth + shift;
    const int top = 40 + (person - 1) / kColumns * kRowHeight;
    heads.push_back({{"fynId", person},
                     {"associatedHeads",
                      {{{"id", person},
                        {"camId", 0},
                        {"isSpeaker", person == 1},
                        {"bbox", rect(left, top)},
                        {"yaw", 12.5},
                        {"pitch", 3},
                        {"qfactor", 1},
                        {"score", 0.97}}}}});
  }
  return nlohmann::ordered_json{
      {"timestamp", frameNumber * 33}, {"frameNumber", frameNumber}, {"heads", heads}}
      .dump();
}

}  // namespace fyn::productionrules::bench
