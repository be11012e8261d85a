// A real room and the turns of a real meeting. The two were recorded apart: that these four people of the
// room say those turns is this test's invention.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <utility>

#include "geometry/RectMath.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

constexpr Dimension kImage{1920, 1080};
// While all four are in the room and sit.
constexpr std::uint64_t kBeginMs = 50000;
constexpr std::uint64_t kEndMs = 158000;
constexpr std::uint64_t kStepMs = 100;

struct Turn {
  std::uint64_t begin;
  std::uint64_t end;
  std::int32_t person;
};

using People = std::map<std::int32_t, Rect>;

std::filesystem::path dataFile(const char* name) {
  return std::filesystem::path(PR_SOURCE_DIR) / ".." / "shared" / "data" / name;
}

/** The fields of each row; comments and the header are left out. */
std::vector<std::vector<std::string>> readCsv(const std::filesystem::path& path) {
  std::ifstream file(path);
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || std::isdigit(static_cast<unsigned char>(line.front())) == 0) {
      continue;
    }
    std::stringstream fields(line);
    rows.emplace_back();
    for (std::string field; std::getline(fields, field, ',');) {
      rows.back().push_back(field);
    }
  }
  return rows;
}

std::map<std::uint64_t, People> readTracks() {
  std::map<std::uint64_t, People> scenes;
  for (const std::vector<std::string>& row : readCsv(dataFile("tracks_campus_ip2.csv"))) {
    scenes[std::stoull(row[0])][std::stoi(row[1])] = {std::stoi(row[2]), std::stoi(row[3]), std::stoi(row[4]),
                                                      std::stoi(row[5])};
  }
  return scenes;
}

std::vector<Turn> readTurns() {
  const std::map<std::string, std::int32_t> seats{
      {"FIE073", 13}, {"MIO086", 14}, {"FIE038", 3}, {"MIE085", 10}};
  std::vector<Turn> turns;
  for (const std::vector<std::string>& row : readCsv(dataFile("turns_ami_is1008a.csv"))) {
    turns.push_back({std::stoull(row[0]), std::stoull(row[1]), seats.at(row[2])});
  }
  return turns;
}

/** What the pictures of a meeting were worth. */
struct Score {
  int speaking = 0;
  int framed = 0;
  std::vector<std::uint64_t> delays;
  std::size_t changes = 0;
  std::size_t recoveries = 0;
};

bool isInside(const Rect& outer, const Rect& inner) {
  return enclosing(outer, inner) == outer;
}

Score play(SpeakerRun& run) {
  const std::map<std::uint64_t, People> tracks = readTracks();
  const std::vector<Turn> turns = readTurns();
  std::map<std::size_t, bool> shown;
  Score score;
  for (std::uint64_t time = kBeginMs; time < kEndMs; time += kStepMs) {
    const People& people = std::prev(tracks.upper_bound(time))->second;
    const auto speaks = [time](const Turn& turn) { return turn.begin <= time && time < turn.end; };
    Scene result;
    for (const auto& [id, box] : people) {
      result.person(id).box(box).speaking(
          std::any_of(turns.begin(), turns.end(),
                      [&, person = id](const Turn& turn) { return turn.person == person && speaks(turn); }));
    }
    run.see(result);
    const Rect& view = run.current().frames.front().source;
    EXPECT_TRUE(isInside(Rect{0, 0, kImage.width, kImage.height}, view)) << time;
    for (std::size_t i = 0; i < turns.size(); ++i) {
      const auto speaker = people.find(turns[i].person);
      if (!speaks(turns[i]) || speaker == people.end()) {
        continue;
      }
      const bool framed = run.current().layoutType != FramingType::GROUP && isInside(view, speaker->second);
      ++score.speaking;
      score.framed += framed ? 1 : 0;
      if (framed && !std::exchange(shown[i], true)) {
        score.delays.push_back(time - std::min(time, turns[i].begin));
      }
    }
  }
  std::sort(score.delays.begin(), score.delays.end());
  for (const LayoutDecision& decision : run.takeDecisions()) {
    const bool recovers = std::string_view(decision.reason).substr(0, 8) == "recovery";
    score.changes += decision.kind == DecisionKind::Adopted ? 1U : 0U;
    score.recoveries += decision.kind == DecisionKind::Adopted && recovers ? 1U : 0U;
  }
  return score;
}

struct MeetingCase {
  const char* name;
  void (*configure)(PrConfig& config);
  /** Per cent of the speaking time, at the least. */
  int framedShare;
  /** Pictures in the whole meeting, at the most. */
  std::size_t changes;
};

void PrintTo(const MeetingCase& meeting, std::ostream* out) {
  *out << meeting.name;
}

// A few per cent below and above what was measured.
constexpr MeetingCase kMeetings[] = {
    {"default", [](PrConfig&) {}, 95, 16},
    {"neighbours", [](PrConfig& config) { config.sfUseSsb = false; }, 58, 12},
    {"noHold", [](PrConfig& config) { config.sfLayoutHold = false; }, 78, 10},
    {"calm", [](PrConfig& config) { config.timersLayoutChangeSfFrameSpeaker = 2000; }, 66, 6},
    {"recovery", [](PrConfig& config) { config.sfRecoveryMode = true; }, 78, 10},
};

class SpeakerRealMeeting : public ::testing::TestWithParam<MeetingCase> {};

TEST_P(SpeakerRealMeeting, FramesWhoSpeaks) {
  if (!std::filesystem::exists(dataFile("turns_ami_is1008a.csv")) ||
      !std::filesystem::exists(dataFile("tracks_campus_ip2.csv"))) {
    GTEST_SKIP() << "no recorded meeting beside the repository";
  }
  SpeakerRun run(kImage, kStepMs);
  run.with(GetParam().configure);
  const Score score = play(run);
  ASSERT_GT(score.speaking, 0);
  ASSERT_FALSE(score.delays.empty());
  const int share = score.framed * 100 / score.speaking;
  std::cout << GetParam().name << ": framed " << share << " % of the speaking time, delay median "
            << score.delays[score.delays.size() / 2] << " ms, 95 % "
            << score.delays[score.delays.size() * 95 / 100] << " ms, turns shown " << score.delays.size()
            << ", changes " << score.changes << ", of them by recovery " << score.recoveries << "\n";
  EXPECT_GE(share, GetParam().framedShare);
  EXPECT_LE(score.changes, GetParam().changes);
}

INSTANTIATE_TEST_SUITE_P(Configurations, SpeakerRealMeeting, ::testing::ValuesIn(kMeetings),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace fyn::productionrules::testing
