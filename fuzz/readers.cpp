// A text to both readers of vision results: what the fast one takes, the exact one reads alike.
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <tuple>

#include "fuzz/FuzzRoom.h"
#include "model/FastVisionReader.h"
#include "model/MLData.h"

namespace fyn::productionrules {

namespace {

auto fieldsOf(const Head& head) {
  return std::tie(head.id, head.isSpeaker, head.bbox, head.ssb, head.imageQuality, head.yaw, head.pitch,
                  head.qfactor, head.score, head.camId, head.fynCamId, head.subsetSpeakers,
                  head.proximityGroup, head.explicitGroup, head.extendedGroup);
}

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// The heads in the order of their maps: "any head" is the first of them.
void requireSame(const FynHead& a, const FynHead& b) {
  require(a.id == b.id && a.feedPriorityList == b.feedPriorityList &&
          a.mCamIdAssocHeadMap.size() == b.mCamIdAssocHeadMap.size());
  auto other = b.mCamIdAssocHeadMap.begin();
  for (const auto& [camId, head] : a.mCamIdAssocHeadMap) {
    require(camId == other->first && fieldsOf(*head) == fieldsOf(*other->second));
    ++other;
  }
}

}  // namespace

}  // namespace fyn::productionrules

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fyn::productionrules;
  static FastVisionReader reader;
  const std::string text(fuzzText(data, size));
  const auto fast = reader.read(text);
  if (fast == nullptr) {
    return 0;
  }
  // An error of the library ends the program: the fast reader has taken what is no vision result.
  MLData exact;
  exact.from_json(nlohmann::json::parse(text));
  require(fast->timestamp == exact.timestamp && fast->frameNumber == exact.frameNumber &&
          fast->heads.size() == exact.heads.size());
  for (std::size_t index = 0; index < exact.heads.size(); ++index) {
    requireSame(*fast->heads[index], *exact.heads[index]);
  }
  return 0;
}
