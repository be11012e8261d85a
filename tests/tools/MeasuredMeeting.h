#pragma once

#include <array>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/testing/SceneBuilder.h"
#include "tests/tools/RunPrb.h"

namespace fyn::productionrules::testing {

/** Builds a recording of a secondary device with camera 1 (1280 x 720): the test itself decides what the
 * picture shows, as a primary device would. */
class MeasuredMeeting {
 public:
  /** Left, top, width, height in pixels. */
  using Box = std::array<int, 4>;

  /** A part of the camera's image and its place in the output. */
  struct Tile {
    Box source;
    Box dest;
  };

  MeasuredMeeting() {
    add({{"t", 0}, {"property", {{"vendor.fynpilot.fynOperatingMode", "2"}}}});
    add({{"t", 0}, {"topic", "/camera"}, {"payload", {{"fynCamId", 1}}}});
  }

  /** Camera 1's part `source` fills the whole output from `t` on. */
  void show(int t, Box source) { show(t, {Tile{source, {0, 0, 1280, 720}}}); }

  /** The frames name a person who is not in the room, so that the device leaves their views as they are. */
  void show(int t, const std::vector<Tile>& tiles) {
    json stream{{"streamid", 0},
                {"layoutType", "HEAD"},
                {"isVirtualCamera", "false"},
                {"frameNumber", 0},
                {"animation", "cut"},
                {"duration", 0},
                {"facecount", 1},
                {"destRef", {{"width", 1280}, {"height", 720}}}};
    for (const auto& [source, dest] : tiles) {
      stream["scene"].push_back({{"cameraid", 1},
                                 {"fynCamId", 1},
                                 {"srcRef", {{"width", 1280}, {"height", 720}}},
                                 {"source", placed(source)},
                                 {"dest", placed(dest)},
                                 {"frameindex", stream["scene"].size()},
                                 {"frameType", "HEAD"},
                                 {"heads", {99}}});
    }
    add({{"t", t}, {"topic", "/PRBOutSecondary/1"}, {"payload", {{"streams", {stream}}}}});
  }

  void see(int t, const Scene& room) { add({{"t", t}, {"topic", "/ICDOut"}, {"payload", room.json()}}); }
  void tell(int t, const nlohmann::json& truth) { add({{"t", t}, {"truth", truth}}); }
  void wait(int t) { add({{"t", t}}); }

  const std::string& text() const { return mText; }

 private:
  using json = nlohmann::json;

  static json placed(const Box& box) {
    return {{"xoffset", box[0]}, {"yoffset", box[1]}, {"width", box[2]}, {"height", box[3]}};
  }

  void add(const json& line) { mText += line.dump() + "\n"; }

  std::string mText;
};

inline nlohmann::json reportOn(const std::string& recording, std::vector<std::string> options = {}) {
  options.insert(options.begin(), {"report", "-", "--json", "-"});
  const PrbRun run = runPrbWith(options, recording);
  EXPECT_EQ(run.status, 0) << run.err;
  return nlohmann::json::parse(run.out);
}

}  // namespace fyn::productionrules::testing
