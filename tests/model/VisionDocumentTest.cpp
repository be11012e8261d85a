#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

#include "model/FynCamerasConfig.h"
#include "model/MLData.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules {
namespace {

using Lines = std::vector<std::string>;

class VisionTest : public ::testing::Test {
 protected:
  static MLData read(const std::string& document) {
    MLData data;
    data.from_json(nlohmann::json::parse(document));
    return data;
  }

  static std::shared_ptr<FynHead> person(std::int32_t id, int camId, int left, int top) {
    const auto head = std::make_shared<Head>();
    head->camId = camId;
    head->bbox = {left, top, left + 10, top + 10};
    const auto made = std::make_shared<FynHead>();
    made->setHead(head);
    made->id = id;
    return made;
  }

  static std::vector<std::int32_t> idsOf(const std::vector<std::shared_ptr<FynHead>>& persons) {
    std::vector<std::int32_t> ids;
    for (const auto& one : persons) {
      ids.push_back(one->id);
    }
    return ids;
  }

  testing::TestEnvironment environment;
};

TEST_F(VisionTest, PersonsInTheOrderOfTheDocument) {
  const MLData data = read(R"({"timestamp":17,"frameNumber":5000000000,"heads":[
      {"fynId":9,"associatedHeads":[{"id":1,"camId":0,"yaw":9},{"id":2,"camId":1,"isSpeaker":true}]},
      {"fynId":4,"associatedHeads":[{"id":3,"camId":0,"isSpeaker":true}]}]})");
  EXPECT_EQ(idsOf(data.getHeads()), (std::vector<std::int32_t>{9, 4}));
  EXPECT_EQ(data.frameNumber, 5000000000);
  EXPECT_EQ(data.str(), "timestamp: 17, headcount:2");
  EXPECT_EQ(data.heads[0]->getHead(1)->id, 2);
  EXPECT_EQ(data.heads[0]->getHead(2), nullptr);
  EXPECT_EQ(idsOf(data.getSpeakers()).back(), 4);
  EXPECT_EQ(environment.log.take(), Lines{});
}

TEST_F(VisionTest, PersonsThatCannotBeUsedAreLoggedAndDropped) {
  struct Row {
    const char* person;
    Lines log;
  };
  const Row rows[] = {
      {R"({"fynId":-1,"associatedHeads":[{"camId":0}]})",
       {R"(E||from_json **Received INVALID HEAD Head list {"associatedHeads":[{"camId":0}],"fynId":-1})"}},
      {R"({"associatedHeads":[{"camId":0}]})",
       {R"(E||from_json **Received INVALID HEAD Head list {"associatedHeads":[{"camId":0}]})",
        R"(E||from_json **Received INVALID HEAD Head list {"associatedHeads":[{"camId":0}]})"}},
      {R"({"fynId":3})",
       {"W||FynHead::updateFeedPriorityList() Feed Priority List empty:  what whould we do this FynID: 3",
        "W||FynHead::getHead() heads empty: CamId: -1 FynID: 3",
        R"(E||from_json **Received EMPTY HEAD Head list {"fynId":3})"}},
      {R"("x")",
       {R"(E||from_json **Received INVALID HEAD Head list "x")",
        "W||FynHead::updateFeedPriorityList() Feed Priority List empty:  what whould we do this FynID: -1",
        "W||FynHead::getHead() heads empty: CamId: -1 FynID: -1",
        R"(E||from_json **Received EMPTY HEAD Head list "x")"}},
  };
  for (const Row& row : rows) {
    const MLData data =
        read(std::string(R"({"heads":[)") + row.person + R"(,{"fynId":8,"associatedHeads":[{"camId":0}]}]})");
    EXPECT_EQ(idsOf(data.heads), std::vector<std::int32_t>{8}) << "the rest is used";
    EXPECT_EQ(environment.log.take(), row.log) << row.person;
  }
}

TEST_F(VisionTest, ElementsAreIteratedAsTheLibraryDoes) {
  EXPECT_EQ(
      idsOf(
          read(
              R"({"heads":{"b":{"fynId":1,"associatedHeads":[{}]},"a":{"fynId":2,"associatedHeads":{"x":{}}}}})")
              .heads),
      (std::vector<std::int32_t>{2, 1}));
  EXPECT_TRUE(read(R"({"heads":null})").heads.empty());
  struct Row {
    const char* document;
    const char* error;
  };
  constexpr Row kRows[] = {
      {"{}", "[json.exception.out_of_range.403] key 'heads' not found"},
      {"[]", "[json.exception.type_error.304] cannot use at() with array"},
      {R"({"heads":[],"timestamp":true})",
       "[json.exception.type_error.302] type must be number, but is boolean"},
      {R"({"heads":[{"fynId":"1"}]})", "[json.exception.type_error.302] type must be number, but is string"},
  };
  for (const Row& row : kRows) {
    try {
      read(row.document);
      ADD_FAILURE() << row.document << " was read";
    } catch (const nlohmann::json::exception& fault) {
      EXPECT_STREQ(fault.what(), row.error) << row.document;
    }
  }
}

TEST_F(VisionTest, OfTwoHeadsInOneCameraTheFirstStays) {
  const MLData data =
      read(R"({"heads":[{"fynId":1,"associatedHeads":[{"id":5,"camId":2},{"id":6,"camId":2}]}]})");
  ASSERT_EQ(data.heads[0]->mCamIdAssocHeadMap.size(), 1U);
  EXPECT_EQ(data.heads[0]->getHead(2)->id, 5);
}

TEST_F(VisionTest, TheBestViewComesFirst) {
  struct Row {
    const char* heads;
    std::vector<std::uint32_t> order;
  };
  const Row rows[] = {
      {R"([{"camId":1,"qfactor":3,"yaw":0},{"camId":2,"qfactor":1,"yaw":90}])", {2, 1}},
      {R"([{"camId":1,"yaw":20.0},{"camId":2,"yaw":5.0},{"camId":3,"yaw":5.5}])", {2, 3, 1}},
      {R"([{"camId":1},{"camId":7},{"camId":2}])",
       {7}},  // a tie: the front camera; the others as the map has them
  };
  FynCamerasConfig::getMutable().forCamId = 7;
  for (const Row& row : rows) {
    const MLData data = read(std::string(R"({"heads":[{"fynId":1,"associatedHeads":)") + row.heads + "}]}");
    std::vector<std::uint32_t> order = data.heads[0]->feedPriorityList;
    order.resize(row.order.size());
    EXPECT_EQ(order, row.order) << row.heads;
    EXPECT_EQ(data.heads[0]->getTopFeedPriorityCamID(), row.order[0]);
    EXPECT_EQ(data.heads[0]->getTopFeedPriorityHead()->camId, static_cast<std::int32_t>(row.order[0]));
  }
  FynHead better = *read(R"({"heads":[{"fynId":1,"associatedHeads":[{"camId":1},{"camId":2}]}]})").heads[0];
  better.mCamIdAssocHeadMap.at(2)->imageQuality = 9.0F;
  better.feedPriorityList.clear();
  better.updateFeedPriorityList();
  EXPECT_EQ(better.getTopFeedPriorityCamID(), 2U) << "the larger head at equal rank and yaw";
}

TEST_F(VisionTest, AFeedPriorityListThatIsEmptyOrBehindIsSaid) {
  FynHead person;
  person.id = 6;
  EXPECT_EQ(person.getTopFeedPriorityCamID(), FynHead::kNoCamera);
  EXPECT_EQ(person.getTopFeedPriorityHead(), nullptr);
  const std::string empty = "E||FynHead::getTopFeedPriorityCamID() Feed Priority List empty!!!!! FynID: 6";
  EXPECT_EQ(
      environment.log.take(),
      (Lines{empty, empty,
             "W||FynHead::getTopFeedPriorityHead() top Feed Priority Head not found in mCamIdAssocHeadMap, "
             "FynID: 6"}));
  const auto head = std::make_shared<Head>();
  head->id = 4294967298;
  head->camId = 3;
  person.setHead(head);
  EXPECT_EQ(person.id, 2) << "narrowed to 32 bits";
  EXPECT_TRUE(person.feedPriorityList.empty()) << "the list is not rebuilt";
  person.updateFeedPriorityList();
  EXPECT_TRUE(person.isFeedPriorityAvailable(3));
  EXPECT_FALSE(person.isFeedPriorityAvailable(4));
  EXPECT_FALSE(person.hasTopFeedPriorityCameraChanged(3));
  EXPECT_TRUE(person.hasTopFeedPriorityCameraChanged(4));
}

TEST_F(VisionTest, PersonsAreSortedFromLeftToRightThenByCamera) {
  MLData data;
  data.heads = {person(1, 2, 50, 0), person(2, 1, 5, 0),  person(3, 0, 900, 0),
                person(4, 2, 10, 0), person(5, 2, 10, 9), person(6, 1, 4, 0)};
  data.sortFynHeads(2);
  // In camera 2: left, then lower first; then the other cameras in ascending order.
  EXPECT_EQ(idsOf(data.heads), (std::vector<std::int32_t>{5, 4, 1, 3, 6, 2}));
}

TEST_F(VisionTest, SortingStaysDefinedWhateverThePersons) {
  std::mt19937 random(3);
  for (int round = 0; round < 50; ++round) {
    MLData data;
    for (std::int32_t id = 0; id < 40; ++id) {
      data.heads.push_back(
          random() % 3 == 0 ? std::make_shared<FynHead>()
                            : person(id, static_cast<int>(random() % 3), static_cast<int>(random() % 5), 0));
    }
    std::vector<std::shared_ptr<FynHead>> before = data.heads;
    data.sortFynHeads(1);
    EXPECT_TRUE(std::is_permutation(before.begin(), before.end(), data.heads.begin()));
  }
  EXPECT_EQ(environment.log.take().at(0), "W||sortFynHeads(): head is null");
}

TEST_F(VisionTest, EqualResultsHaveEqualPersons) {
  const std::string same =
      R"({"timestamp":1,"frameNumber":2,"heads":[{"fynId":1,"associatedHeads":[{"id":5,"camId":2}]}]})";
  EXPECT_TRUE(read(same).equals(read(same)));
  for (const char* other :
       {R"({"timestamp":9,"frameNumber":2,"heads":[{"fynId":1,"associatedHeads":[{"id":5,"camId":2}]}]})",
        R"({"timestamp":1,"frameNumber":9,"heads":[{"fynId":1,"associatedHeads":[{"id":5,"camId":2}]}]})",
        R"({"timestamp":1,"frameNumber":2,"heads":[{"fynId":9,"associatedHeads":[{"id":5,"camId":2}]}]})",
        R"({"timestamp":1,"frameNumber":2,"heads":[{"fynId":1,"associatedHeads":[{"id":9,"camId":2}]}]})",
        R"({"timestamp":1,"frameNumber":2,"heads":[{"fynId":1,"associatedHeads":[{"id":5,"camId":9}]}]})",
        R"({"timestamp":1,"frameNumber":2,"heads":[]})"}) {
    EXPECT_FALSE(read(same).equals(read(other))) << other;
  }
  MLData data;
  data.setHeads(read(same).heads);
  EXPECT_EQ(environment.log.take(), Lines{"D||setHeads FynHeads: [1]"});
}

}  // namespace
}  // namespace fyn::productionrules
