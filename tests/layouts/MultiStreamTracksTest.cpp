// Real people before real cameras, with the misses and broken ids of real detectors: nobody changes stream
// while in view. The tracks are not part of the sources; without them the test is skipped.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>

#include "layouts/streams/MultiStreamFramingLayout.h"
#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"
#include "tests/layouts/PeopleRun.h"
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

struct Result {
  Faults faults;
  std::size_t shown = 0;
  std::size_t cut = 0;
  int pictures = 0;
};

// Moments without rows have nobody in view; a gap in the times is filled with them.
Result play(PeopleRun& run, const Tracks& tracks) {
  Result result;
  StreamWatch watch;
  const std::int64_t last = tracks.moments.rbegin()->first;
  for (std::int64_t from = 0; from <= last; from += static_cast<std::int64_t>(PeopleRun::kStepMs)) {
    const auto moment = tracks.moments.lower_bound(from);
    const bool isNow = moment != tracks.moments.end() &&
                       moment->first < from + static_cast<std::int64_t>(PeopleRun::kStepMs);
    result.pictures += run.see(isNow ? moment->second : scene()) ? 1 : 0;
    const Faults more = watch.look(run.layouts());
    result.faults.insert(result.faults.end(), more.begin(), more.end());
    for (const std::shared_ptr<Layout>& layout : run.layouts().getFinalLayoutPtrs()) {
      const Faults views = viewFaults(*layout);
      result.faults.insert(result.faults.end(), views.begin(), views.end());
      if (layout->streamId != 0 && layout->layoutType != FramingType::ROOM) {
        result.cut += cutFaults(layout->frames.front(), run.layouts().peopleMap()).size();
        result.shown += layout->frames.front().fynHeads.size();
      }
    }
  }
  return result;
}

TEST(MultiStreamTracks, NobodyChangesStreamWhileInView) {
  for (const char* const name : {"tracks_campus_ip2.csv", "tracks_campus_ip5.csv", "tracks_vtest_hog.csv",
                                 "tracks_walkpause_face.csv"}) {
    const Tracks tracks = readTracks(name);
    if (tracks.moments.empty()) {
      GTEST_SKIP() << "skipped: " << name << " is not there";
    }
    for (const int streams : {1, 3, 16}) {
      PeopleRun run;
      VisionSettings::setLogLevel(0);
      FynCamerasConfig::getMutable().setCameraLensModelDimension(0, tracks.image);
      run.with([&](PrConfig& config) { config.maxStreams = streams; }).engine<MultiStreamFramingLayout>();
      const Result result = play(run, tracks);
      EXPECT_EQ(result.faults, Faults()) << name << ", " << streams << " streams";
      ASSERT_GT(result.shown, 20U) << name;
      std::cout << name << ", " << streams << " streams: " << result.pictures << " documents, heads whole "
                << 100.0 - 100.0 * static_cast<double>(result.cut) / static_cast<double>(result.shown)
                << " % of their time\n";
    }
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
