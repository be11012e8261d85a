// Real people in a real room with two cameras: nobody is cut by a new picture and no tile flickers. The
// tracks are not part of the sources; without them the test is skipped.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

#include "layouts/people/PeopleFramingLayout.h"
#include "layouts/people/PrimaryPeopleLayout.h"
#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"
#include "tests/layouts/PeopleRun.h"
#include "tests/layouts/PictureFaults.h"

namespace fyn::productionrules::testing {
namespace {

constexpr Dimension kImage{1920, 1080};
constexpr const char* kCameraFiles[] = {"tracks_campus_ip2.csv", "tracks_campus_ip5.csv"};

using Boxes = std::map<std::int32_t, Rect>;
/** Per camera the boxes of every person, by tenths of a second. */
using Tracks = std::vector<std::map<std::int64_t, Boxes>>;

Tracks readTracks(std::size_t cameras) {
  Tracks tracks(cameras);
  for (std::size_t camera = 0; camera < cameras; ++camera) {
    std::ifstream file(std::string(PR_SOURCE_DIR) + "/../shared/data/" + kCameraFiles[camera]);
    for (std::string line; std::getline(file, line);) {
      std::istringstream row(line);
      double ms = 0;
      std::int32_t id = 0;
      Rect box;
      char comma = 0;
      if (row >> ms >> comma >> id >> comma >> box.left >> comma >> box.top >> comma >> box.right >> comma >>
          box.bottom) {
        tracks[camera][static_cast<std::int64_t>(ms / 100 + 0.5)][id] = box;
      }
    }
  }
  return tracks;
}

Scene sceneAt(const Tracks& tracks, std::int64_t tenth) {
  std::map<std::int32_t, std::vector<std::pair<std::int32_t, Rect>>> persons;
  for (std::size_t camera = 0; camera < tracks.size(); ++camera) {
    const auto boxes = tracks[camera].find(tenth);
    if (boxes != tracks[camera].end()) {
      for (const auto& [id, box] : boxes->second) {
        persons[id].emplace_back(static_cast<std::int32_t>(camera), box);
      }
    }
  }
  Scene scene;
  for (const auto& [id, heads] : persons) {
    scene.person(id);
    for (const auto& [camera, box] : heads) {
      // The larger head counts as the better view: the tracks know nothing of turned heads.
      scene.camera(camera).box(box).yaw(100 - (box.bottom - box.top));
    }
  }
  return scene;
}

struct Result {
  int changes = 0;
  int quickReturns = 0;
  Faults faults;
  std::int64_t shown = 0;
  std::int64_t whole = 0;

  double wholeShare() const { return 100.0 * static_cast<double>(whole) / static_cast<double>(shown); }
};

/** Counts the persons in tiles and those of them who are not cut. */
void countHeads(const BaseLayout& engine, Result& result) {
  for (const Frame& frame : engine.getLayoutPtr()->frames) {
    if (frame.frameType == FramingType::GROUP || frame.frameType == FramingType::ROOM) {
      continue;
    }
    const auto cut = static_cast<std::int64_t>(cutFaults(frame, engine.peopleMap()).size());
    result.shown += static_cast<std::int64_t>(frame.fynHeads.size());
    result.whole += static_cast<std::int64_t>(frame.fynHeads.size()) - cut;
  }
}

void checkChange(const PeopleRun& run, std::vector<std::pair<std::uint64_t, std::string>>& history,
                 BaseLayout& engine, Result& result) {
  constexpr std::uint64_t kFlickerMs = 1000;
  const Layout& layout = *engine.getLayoutPtr();
  for (const Frame& frame : layout.frames) {
    const Faults cut = cutFaults(frame, engine.peopleMap());
    result.faults.insert(result.faults.end(), cut.begin(), cut.end());
  }
  const std::string picture = run.picture();
  const std::uint64_t now = run.environment.time.now();
  if (history.size() > 1 && history[history.size() - 2].second == picture &&
      now - history.back().first < kFlickerMs) {
    ++result.quickReturns;
  }
  history.emplace_back(now, picture);
  ++result.changes;
}

Result play(PeopleRun& run, const Tracks& tracks) {
  VisionSettings::setLogLevel(0);
  Result result;
  std::vector<std::pair<std::uint64_t, std::string>> history;
  const std::int64_t last = tracks.front().rbegin()->first;
  for (std::int64_t tenth = 0; tenth <= last; ++tenth) {
    run.decisions.clear();
    run.see(sceneAt(tracks, tenth));
    const bool adopted = std::any_of(run.decisions.begin(), run.decisions.end(), [](const auto& decision) {
      return decision.kind == DecisionKind::Adopted;
    });
    if (adopted) {
      checkChange(run, history, run.layouts(), result);
    }
    const Faults views = viewFaults(run.current());
    result.faults.insert(result.faults.end(), views.begin(), views.end());
    countHeads(run.layouts(), result);
  }
  return result;
}

void noWaits(PrConfig& config) {
  for (std::int32_t PrConfig::*wait :
       {&PrConfig::timersPFLayoutChangeGf2Other, &PrConfig::timersPFLayoutChangeHead2Other,
        &PrConfig::timersPFLayoutChangeProx2Gf, &PrConfig::timersPFLayoutChangeProx2Head,
        &PrConfig::timersPFLayoutChangeProx2Prox, &PrConfig::timersPFLayoutChangeRoom2Head,
        &PrConfig::timersPFLayoutChangeRoom2Other, &PrConfig::timersLayoutChangeHeadCountChange,
        &PrConfig::timersLayoutChangeHeadPosChange, &PrConfig::realHeadCounterMax}) {
    config.*wait = 0;
  }
}

struct Variant {
  const char* name;
  bool primary;
  void (*change)(PrConfig&);
};

TEST(PeopleTracks, NobodyIsCutByANewPictureAndNoTileFlickers) {
  const Tracks both = readTracks(2);
  if (both[0].empty() || both[1].empty()) {
    GTEST_SKIP() << "skipped: the tracks are not there";
  }
  const Variant variants[] = {
      {"alone", false, [](PrConfig&) {}},
      {"alone, neighbours apart", false, [](PrConfig& config) { config.newPfFeatureEnabled = false; }},
      {"alone, no waits", false, noWaits},
      {"primary of two cameras", true, [](PrConfig&) {}},
  };
  std::map<std::string, Result> results;
  for (const Variant& variant : variants) {
    PeopleRun run({0, 1});
    for (const int camera : {0, 1}) {
      FynCamerasConfig::getMutable().setCameraLensModelDimension(camera, kImage);
    }
    run.with(variant.change);
    // Standing about in a hall there are up to eleven of them.
    run.with([](PrConfig& config) {
      config.compositeModeMaxPeople = 12;
      config.compositeModeMaxPeoplePrimary = 12;
    });
    if (variant.primary) {
      run.engine<PrimaryPeopleLayout>();
    } else {
      run.engine<PeopleFramingLayout>();
    }
    const Result result = play(run, variant.primary ? both : Tracks{both[0]});
    EXPECT_EQ(result.faults, Faults()) << variant.name;
    const double minutes = static_cast<double>(run.environment.time.now()) / 60000;
    std::cout << variant.name << ": " << result.changes / minutes << " changes a minute, heads whole "
              << result.wholeShare() << " % of their time in tiles, " << result.quickReturns
              << " returns within a second\n";
    results[variant.name] = result;
  }
  EXPECT_EQ(results["alone"].quickReturns, 0);
  EXPECT_EQ(results["primary of two cameras"].quickReturns, 0);
  EXPECT_LT(results["alone"].changes, results["alone, no waits"].changes);
}

}  // namespace
}  // namespace fyn::productionrules::testing
