// Who is believed to speak, by tags that come late, drop out and err.
#include <gtest/gtest.h>

#include <string>

#include "layouts/speaker/SpeechBelief.h"

namespace fyn::productionrules::testing {
namespace {

struct TagCase {
  const char* name;
  /** A letter for each result, ten a second: '#' tagged, '.' not, 'm' missed. */
  std::string first;
  std::string second;
  bool isFirstShown;
  /** Who has the word: '1', '2', 'b' for both, '.' for nobody. */
  std::string word;
};

std::string wordOf(const std::set<std::int64_t>& speakers) {
  return speakers.size() > 1 ? "b" : speakers.empty() ? "." : std::to_string(*speakers.begin());
}

TEST(SpeechBelief, FollowsTagsLikeSomebodyWhoListens) {
  const TagCase cases[] = {
      {"a tag in the very first result", "#", "", true, "1"},
      {"a cough", ".###......", "", false, ".........."},
      {"undisputed speech, and its end", ".########........", "", false, "....11111111111.."},
      {"on screen it takes longer", ".########", "", true, ".......11"},
      {"a gap of tags", "####..####", "", true, "1111111111"},
      {"the word passes on", "######......", "......######", true, "111111111222"},
      {"interrupted after a second", "################", "....############", true, "11111111111111bb"},
      {"missed: frozen, then over", "########mmmmmmmmmmmmm", "", true, "1111111111111111111.."},
  };
  for (const TagCase& each : cases) {
    SpeechBelief belief;
    std::string word;
    for (std::size_t i = 0; i < each.first.size(); ++i) {
      std::vector<SpeechHint> hints{{1, each.first[i] == '#', each.first[i] == 'm', each.isFirstShown}};
      if (!each.second.empty()) {
        hints.push_back({2, each.second[i] == '#', each.second[i] == 'm', false});
      }
      belief.update(hints, static_cast<std::uint32_t>(1000 + 100 * i));
      word += wordOf(belief.speakers());
    }
    EXPECT_EQ(word, each.word) << each.name;
  }
}

TEST(SpeechBelief, GoesOnUnderANewNumber) {
  SpeechBelief belief;
  belief.update({{1, true, false, true}}, 1000);
  belief.rename(1, 7);
  belief.update({{7, false, false, true}}, 1100);
  EXPECT_EQ(belief.speakers(), std::set<std::int64_t>{7});
  EXPECT_EQ(belief.speechMs(7, 1100), 100U);
}

}  // namespace
}  // namespace fyn::productionrules::testing
