// The tracks of real rooms through the whole service, judged by its documents alone: nobody changes stream
// while in view. The tracks are not part of the sources; without them the test is skipped.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tests/tools/RunPrb.h"
#include "tools/replay/RecordingRun.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

/** Compares the people of the recording with the people whom the documents name on streams 1 and up. */
class StreamKeeping final : public ReplayObserver {
 public:
  /** Who is in view from now on. */
  void see(std::set<std::int64_t> people) {
    for (auto place = mStreamOf.begin(); place != mStreamOf.end();) {
      place = people.count(place->first) == 0 ? mStreamOf.erase(place) : std::next(place);
    }
    mInView = std::move(people);
  }

  void onPublish(const std::string& topic, const std::string& payload) override {
    if (topic != "/PRBOut") {
      return;
    }
    const json document = json::parse(payload);
    for (const json& stream : document.at("streams")) {
      const int id = stream.at("streamid").get<int>();
      for (const json& person : stream.at("scene").at(0).at("heads")) {
        if (id != 0 && mInView.count(person.get<std::int64_t>()) != 0) {
          place(person.get<std::int64_t>(), id);
        }
      }
    }
  }

  int placed = 0;
  std::string changes;

 private:
  void place(std::int64_t person, int stream) {
    const auto [entry, isNew] = mStreamOf.emplace(person, stream);
    placed += isNew ? 1 : 0;
    if (entry->second != stream) {
      changes += std::to_string(person) + " went from " + std::to_string(entry->second) + " to " +
                 std::to_string(stream) + "\n";
    }
  }

  std::set<std::int64_t> mInView;
  std::map<std::int64_t, int> mStreamOf;
};

std::set<std::int64_t> peopleOf(const std::string& line) {
  std::set<std::int64_t> people;
  const json event = json::parse(line);
  if (event.value("topic", "") == "/ICDOut") {
    for (const json& person : event.at("payload").at("heads")) {
      people.insert(person.at("fynId").get<std::int64_t>());
    }
  }
  return people;
}

StreamKeeping replayTracks(const std::string& recording, const char* streams) {
  StreamKeeping keeping;
  ReplayOptions options;
  std::ostringstream printed;
  options.standardOutput = &printed;
  // A primary device, whose documents name the persons.
  options.properties = {{"vendor.talkertracking.flag", "5"},
                        {"vendor.fynpilot.fynOperatingMode", "1"},
                        {"vendor.fynpilot.maxStreams", streams}};
  Replay replay(options, keeping);
  std::istringstream input(recording);
  RecordingReader reader(input, "tracks");
  std::istringstream lines(recording);
  RecordingEvent event;
  for (std::string line; std::getline(lines, line) && reader.next(event);) {
    if (line.find("/ICDOut") != std::string::npos) {
      keeping.see(peopleOf(line));
    }
    replay.handle(event);
  }
  replay.finish();
  return keeping;
}

TEST(MultiStreamTracksReplay, NobodyChangesStreamWhileInView) {
  for (const char* const name : {"tracks_campus_ip2.csv", "tracks_campus_ip5.csv", "tracks_vtest_hog.csv"}) {
    const auto tracks = std::filesystem::path(PR_SOURCE_DIR) / ".." / "shared" / "data" / name;
    if (!std::filesystem::exists(tracks)) {
      GTEST_SKIP() << "skipped: " << name << " is not there";
    }
    const PrbRun imported = runPrbWith({"import", tracks.string()});
    ASSERT_EQ(imported.status, 0) << imported.err;
    for (const char* const streams : {"1", "3", "16"}) {
      const StreamKeeping keeping = replayTracks(imported.out, streams);
      EXPECT_EQ(keeping.changes, "") << name << ", " << streams << " streams";
      EXPECT_GT(keeping.placed, 8) << name << ", " << streams << " streams";
    }
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
