#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>

#include "platform/PubSub.h"
#include "platform/Topics.h"
#include "tests/testing/Folders.h"

namespace com::quil::pubsub {
namespace {

struct Coverage {
  const char* subscribed;
  const char* topic;
  bool covered;
};

TEST(TopicCovers, TheTopicItselfAndEveryTopicBeneath) {
  constexpr Coverage kRows[] = {
      {"/ctl", "/ctl", true},
      {"/ctl", "/ctl/tracking-mode", true},
      {"/debug/log", "/debug/log/fyncamid", true},
      {"/cameraParameters/head", "/cameraParameters/head/2", true},
      {"/cameraParameters/head", "/cameraParameters", false},
      {"/cameraParameters/head", "/cameraParameters/tail/2", false},
      {"/camera", "/cameras", false},  // a longer word is another topic
      {"/camera", "/cameraParameters/head", false},
      {"/ctl", "/ctl-passthru-remote", false},
      {"/ctl", "/Ctl", false},
      {"/ctl", "/ct", false},
      {"/ctl", "", false},
      {"/PRBOutSecondary/1", "/PRBOutSecondary/12", false},
      {"/a", "/b/a", false},
  };
  for (const Coverage& row : kRows) {
    EXPECT_EQ(topicCovers(row.subscribed, row.topic), row.covered) << row.subscribed << " and " << row.topic;
  }
}

TEST(AppendSubtopic, PutsOneSlashBetween) {
  EXPECT_EQ(appendSubtopic("/PRBOutSecondary", "2"), "/PRBOutSecondary/2");
  EXPECT_EQ(appendSubtopic("/FynCameraMoved", "remote"), "/FynCameraMoved/remote");
}

}  // namespace
}  // namespace com::quil::pubsub

namespace fyn::productionrules {
namespace {

/** The cells of each row of a document's table under the heading whose first column is "Topic". */
std::vector<std::vector<std::string>> topicRows(const std::string& document) {
  std::ifstream file(testing::sourceFolder() + "/" + document);
  std::vector<std::vector<std::string>> rows;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    inside = line.rfind("| Topic | Direction |", 0) == 0 || (inside && line.rfind("|", 0) == 0);
    if (inside && line.rfind("| `", 0) == 0) {
      static const std::regex separator(" ?\\| ?");
      rows.emplace_back(std::sregex_token_iterator(line.begin() + 2, line.end(), separator, -1),
                        std::sregex_token_iterator());
    }
  }
  return rows;
}

const char* directionText(TopicDirection direction) {
  return direction == TopicDirection::in ? "in" : direction == TopicDirection::out ? "out" : "in and out";
}

// The README names topics beneath one, such as /PRBOutSecondary/N, and may leave out one that it covers so.
TEST(TopicTable, HasTheDirectionsOfTheReadme) {
  static const std::regex quoted("`([^`]*)`");
  std::map<std::string, std::string> directions;
  for (const auto& row : topicRows("README.md")) {
    for (std::sregex_iterator name(row[0].begin(), row[0].end(), quoted), end; name != end; ++name) {
      directions[(*name)[1]] = row[1];
    }
  }
  for (const Topic& topic : topics::kTable) {
    const auto named = std::find_if(directions.begin(), directions.end(), [&](const auto& entry) {
      return com::quil::pubsub::topicCovers(topic.name, entry.first);
    });
    ASSERT_NE(named, directions.end()) << topic.name;
    EXPECT_EQ(named->second, directionText(topic.direction)) << topic.name;
  }
  for (const auto& [name, direction] : directions) {
    const std::string& readmeName = name;
    EXPECT_TRUE(std::any_of(topics::kTable.begin(), topics::kTable.end(), [&](const Topic& topic) {
      return com::quil::pubsub::topicCovers(topic.name, readmeName);
    })) << name;
  }
}

}  // namespace
}  // namespace fyn::productionrules
