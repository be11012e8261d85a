// Real people before real cameras, with the misses and broken ids of real detectors: nobody changes stream
// while in view. The tracks are not part of the sources; without them the test is skipped.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>

#include "layouts/streams/MultiStreamFramingLayout.h"
#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"
#include "tests/layouts/EngineRun.h"
#include "tests/layouts/PictureFaults.h"
#include "tests/layouts/StreamWatch.h"

namespace fyn::productionrules::testing {
namespace {

struct Tracks {
  Dimension image;
  /** The persons of each moment, in milliseconds. */
  std::map<std::int64_t, Scene> moments;
};

// "# image 1920x1080, ..." and then "t_ms,person_id,left,top,right,bottom" rows.
Tracks readTracks(const std::string& name) {
  Tracks tracks;
  std::ifstream file(std::string(PR_SOURCE_DIR) + "/../shared/data/" + name);
  for (std::string line; std::getline(file, line);) {
    double ms = 0;
    int id = 0;
    Rect box;
    if (std::sscanf(line.c_str(), "# image %dx%d", &tracks.image.width, &tracks.image.height) == 2) {
      continue;
    }
    if (std::sscanf(line.c_str(), "%lf,%d,%d,%d,%d,%d", &ms, &id, &box.left, &box.top, &box.right,
                    &box.bottom) == 6) {
      tracks.moments[static_cast<std::int64_t>(ms)].person(id).box(box);
    }
  }
  return tracks;
}

// Moments without rows have nobody in view; a gap in the times is filled with them.
void expectSteady(EngineRun& run, const Tracks& tracks) {
  StreamWatch watch;
  std::size_t shown = 0;
  const std::int64_t last = tracks.moments.rbegin()->first;
  constexpr auto kStep = static_cast<std::int64_t>(EngineRun::kStepMs);
  for (std::int64_t from = 0; from <= last; from += kStep) {
    const auto moment = tracks.moments.lower_bound(from);
    const bool isNow = moment != tracks.moments.end() && moment->first < from + kStep;
    run.see(isNow ? moment->second : scene());
    EXPECT_EQ(watch.look(run.layouts()), Faults()) << from;
    shown += watch.count();
    for (const std::shared_ptr<Layout>& layout : run.layouts().getFinalLayoutPtrs()) {
      EXPECT_EQ(viewFaults(*layout), Faults()) << from;
    }
  }
  EXPECT_GT(shown, 20U);
}

TEST(MultiStreamTracks, NobodyChangesStreamWhileInView) {
  for (const char* const name : {"tracks_campus_ip2.csv", "tracks_campus_ip5.csv", "tracks_vtest_hog.csv",
                                 "tracks_walkpause_face.csv"}) {
    const Tracks tracks = readTracks(name);
    if (tracks.moments.empty()) {
      GTEST_SKIP() << "skipped: " << name << " is not there";
    }
    for (const int streams : {1, 3, 16}) {
      SCOPED_TRACE(name + (", " + std::to_string(streams) + " streams"));
      EngineRun run;
      VisionSettings::setLogLevel(0);
      FynCamerasConfig::getMutable().setCameraLensModelDimension(0, tracks.image);
      run.with([&](PrConfig& config) { config.maxStreams = streams; }).engine<MultiStreamFramingLayout>();
      expectSteady(run, tracks);
    }
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
