#include <gtest/gtest.h>

#include "geometry/PeopleInFrame.h"
#include "model/FynCamerasConfig.h"
#include "tests/geometry/GeometryTesting.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using testing::CapturedLog;
using testing::person;
using Ids = std::set<std::int64_t>;
using Lines = std::vector<std::string>;
using Person = std::shared_ptr<FynHead>;

std::shared_ptr<MLData> visionResult(const std::vector<Person>& persons) {
  auto result = std::make_shared<MLData>();
  result->heads = persons;
  return result;
}

TEST(PeopleInFrame, SomebodyElseIsWhollyInside) {
  const Person framed = person(1, {120, 120, 180, 180});
  const Rect frame{100, 100, 200, 200};
  const struct {
    const char* what;
    Person other;
    bool present;
  } rows[] = {
      {"inside", person(2, {110, 110, 150, 150}), true},
      {"touches the left edge", person(2, {100, 110, 150, 150}), false},
      {"touches the bottom edge", person(2, {110, 110, 150, 200}), false},
      {"outside", person(2, {300, 110, 350, 150}), false},
      {"equal, but another object", person(1, {120, 120, 180, 180}), true},
      {"in another camera", person(2, {110, 110, 150, 150}, 4), false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(isAdditionalHeadsPresentInFrame(frame, visionResult({framed, row.other}), {framed}, 0),
              row.present)
        << row.what;
  }
}

TEST(PeopleInFrame, SpeakerIsFramedWithTheBuffer) {
  auto layout = std::make_shared<Layout>();
  const Person speaker = person(1, {100, 100, 200, 200});
  EXPECT_FALSE(isSpeakerFramedAlready(speaker, layout, 0)) << "no frame";
  layout->frames.resize(2);
  layout->frames[1].source = {0, 0, 1280, 720};
  EXPECT_FALSE(isSpeakerFramedAlready(speaker, layout, 0)) << "only the first frame counts";
  layout->frames[0].source = {74, 74, 226, 226};
  EXPECT_TRUE(isSpeakerFramedAlready(speaker, layout, 0)) << "25 pixels of buffer on each side";
  EXPECT_FALSE(isSpeakerFramedAlready(speaker, layout, 3)) << "not seen by the camera";
  layout->frames[0].source.right = 225;
  EXPECT_FALSE(isSpeakerFramedAlready(speaker, layout, 0)) << "touching is not inside";
}

TEST(PeopleInFrame, SpeakersInOrder) {
  const std::vector<Person> persons{person(5, {}), person(3, {}), person(4, {}), person(1, {}, 2)};
  for (const int i : {0, 2}) {
    persons[static_cast<std::size_t>(i)]->mCamIdAssocHeadMap[0]->isSpeaker = true;
  }
  CapturedLog log;
  EXPECT_EQ(getActiveSpeakers(visionResult(persons), 0), (std::vector<Person>{persons[0], persons[2]}));
  EXPECT_EQ(log.lines(), (Lines{"D|FramingUtil|getActiveSpeakers: IsActiveSpeaker(1) ",
                                "D|FramingUtil|getActiveSpeakers: IsActiveSpeaker(1) "}));
}

TEST(PeopleInFrame, IdsOfHeadsAndPersons) {
  const std::set<Person> persons{person(9, {}, 1), person(4, {}), person(2, {}, 1), person(3, {})};
  CapturedLog log;
  EXPECT_EQ(convertSetVisionFaceToSetIds(persons, 0), (Ids{103, 104}));
  EXPECT_EQ(log.take(),
            (Lines{"E|FramingUtil|convertSetVisionFaceToSetIds head (fynID: 2) not found for camId: 0",
                   "E|FramingUtil|convertSetVisionFaceToSetIds head (fynID: 9) not found for camId: 0"}))
      << "in the order of ids, wherever the persons lie in memory";
  EXPECT_EQ(convertSetVisionFaceToSetIds(persons, FynHead::kNoCamera), (Ids{102, 103, 104, 109}));
  EXPECT_EQ(convertSetVisionFaceToSetFynIds(persons), (Ids{2, 3, 4, 9}));
  EXPECT_EQ(log.lines(), Lines{});
}

}  // namespace
}  // namespace fyn::productionrules
