// Each program by itself, and the script that plays a video through all of them.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "tests/linux/Processes.h"
#include "tests/linux/Servers.h"
#include "tests/testing/Folders.h"
#include "tests/video/MeasuringVideo.h"
#include "tests/video/Pictures.h"

namespace fyn::productionrules::video::testing {
namespace {

using namespace fyn::productionrules::testing;
using nlohmann::json;

constexpr int kFrames = 30;

std::string program(const std::string& name) {
  return programFolder() + "/" + name;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

/** A script with two people, who go from the left to the right with frame 15. */
std::string walkingScript() {
  const auto line = [](int frame, int x) {
    json heads = json::array();
    for (const int left : {x, x + 160}) {
      heads.push_back({{"left", left}, {"top", 240}, {"right", left + 80}, {"bottom", 340}});
    }
    return json{{"frame", frame}, {"heads", heads}}.dump() + "\n";
  };
  return line(1, 120) + line(15, 900);
}

TEST(VisionProgram, WritesTheSameRecordingEveryTime) {
  const ScratchFolder folder;
  const std::string video = folder.file("room.mkv");
  writeMeasuringVideo(video, kFrames, 10);
  const std::string script = folder.write("script.jsonl", walkingScript());
  std::array<std::string, 2> recordings{folder.file("a.jsonl"), folder.file("b.jsonl")};
  for (const std::string& recording : recordings) {
    runTool({program("prb-vision"), video, "--script", script, "-o", recording, "--property",
             "vendor.talkertracking.flag=1"});
  }
  EXPECT_EQ(contentOf(recordings[0]), contentOf(recordings[1]));
  std::ifstream lines(recordings[0]);
  std::vector<json> events;
  for (std::string line; std::getline(lines, line);) {
    events.push_back(json::parse(line));
  }
  ASSERT_EQ(events.size(), 4U + kFrames);
  EXPECT_TRUE(events[0].contains("property"));
  EXPECT_EQ(events[1].at("topic"), "/camera");
  EXPECT_EQ(events[2].at("topic"), "/cameras");
  EXPECT_EQ(events[3].at("payload"), json({{"imageWidth", kWidth}, {"imageHeight", kHeight}}));
  const json& result = events[4 + 9];
  EXPECT_EQ(result.at("t"), 900);
  EXPECT_EQ(result.at("payload").at("timestamp"), 900);
  EXPECT_EQ(result.at("payload").at("frameNumber"), 10);
  const json& persons = result.at("payload").at("heads");
  ASSERT_EQ(persons.size(), 2U);
  const json& head = persons[1].at("associatedHeads").at(0);
  EXPECT_EQ(head.at("bbox"), json({{"left", 280}, {"top", 240}, {"right", 360}, {"bottom", 340}}));
  for (const char* key : {"id", "isSpeaker", "ssb", "yaw", "pitch", "qfactor", "score", "camId"}) {
    EXPECT_TRUE(head.contains(key)) << key;
  }
}

TEST(VisionProgram, SaysThatItServesWithoutItsNetwork) {
  const ScratchFolder folder;
  const std::string video = folder.file("room.mkv");
  writeMeasuringVideo(video, 2, 10);
  Process vision(
      {program("prb-vision"), video, "--models", folder.file(""), "-o", folder.file("room.jsonl")});
  EXPECT_EQ(vision.wait(), 0) << vision.errorText();
  EXPECT_NE(vision.errorText().find("faces.onnx is not there"), std::string::npos) << vision.errorText();
}

// What prb-vision sees, prb replay decides and prb-camera shows, without a clock: the same bytes every time.
TEST(CameraProgram, ShowsAReplayTheSameEveryTime) {
  const ScratchFolder folder;
  const std::string video = folder.file("room.mkv");
  writeMeasuringVideo(video, kFrames, 2);
  const std::string recording = folder.file("room.jsonl");
  const std::string effects = folder.file("effects.jsonl");
  runTool({program("prb-vision"), video, "--script", folder.write("script.jsonl", walkingScript()), "-o",
           recording});
  runTool({program("prb"), "replay", recording, "-o", effects});
  std::vector<std::pair<int, cv::Rect>> scenes;
  std::ifstream lines(effects);
  for (std::string line; std::getline(lines, line);) {
    const json event = json::parse(line);
    if (event.value("topic", "") == "/PRBOut") {
      const json& source = event.at("payload").at("streams").at(0).at("scene").at(0).at("source");
      scenes.push_back({event.at("t").get<int>(),
                        {source.at("xoffset").get<int>(), source.at("yoffset").get<int>(),
                         source.at("width").get<int>(), source.at("height").get<int>()}});
    }
  }
  ASSERT_GE(scenes.size(), 2U) << "nothing was decided";
  std::array<std::string, 2> films{folder.file("a.mkv"), folder.file("b.mkv")};
  for (const std::string& film : films) {
    runTool({program("prb-camera"), video, "--scenes", effects, "--vision", recording, "-o", film, "--film",
             folder.file("film.mp4"), "--force", "--enlarge", "10"});
  }
  EXPECT_TRUE(contentOf(films[0]) == contentOf(films[1]));
  EXPECT_EQ(picturesOf(folder.file("film.mp4")).size(), static_cast<std::size_t>(kFrames));
  const std::vector<cv::Mat> pictures = picturesOf(films[0]);
  ASSERT_EQ(pictures.size(), static_cast<std::size_t>(kFrames));
  for (int index = 0; index < kFrames; ++index) {
    cv::Rect wanted = kWhole;
    for (const auto& [t, source] : scenes) {
      wanted = t <= 500 * index ? source : wanted;
    }
    const Seen seen = seenIn(pictures[static_cast<std::size_t>(index)]);
    EXPECT_EQ(seen.frame, index + 1);
    EXPECT_TRUE(shows(seen, wanted)) << "frame " << index + 1 << ": " << seen.region << ", not " << wanted;
  }
}

TEST(CameraProgram, AloneShowsItsInputUntilItsEnd) {
  const ScratchFolder folder;
  const MessageBus bus;
  const std::string video = folder.file("room.mkv");
  writeMeasuringVideo(video, 12, 10);
  const std::string film = folder.file("out.mkv");
  Process camera({program("prb-camera"), video, "--fast", "--dbus", bus.address(), "-o", film, "--measure",
                  "--size", "1920x1080"});
  ASSERT_EQ(camera.wait(), 0) << camera.errorText();
  EXPECT_EQ(camera.outputLines().at(0), "ready, zoom 2");
  EXPECT_EQ(camera.outputLines().at(1).substr(0, 12), "12 pictures ");
  EXPECT_EQ(picturesOf(film).size(), 12U);
}

TEST(Programs, SayInOneLineWhatTheyCannotUse) {
  const ScratchFolder folder;
  const std::string video = folder.file("room.mkv");
  writeMeasuringVideo(video, 2, 10);
  const std::string text = folder.write("text.jsonl", "{\n");
  using Command = std::vector<std::string>;
  for (const Command& arguments :
       {Command{"prb-camera"}, Command{"prb-camera", "--no-such-option"},
        Command{"prb-camera", folder.file("absent.mp4")}, Command{"prb-camera", video, "-o", "out.txt"},
        Command{"prb-camera", video, "--scenes", folder.file("absent")},
        Command{"prb-camera", video, "--scenes", text},
        Command{"prb-camera", video, "--dbus", "unix:path=/absent"},
        Command{"prb-camera", video, "--cameras", text}, Command{"prb-vision"},
        Command{"prb-vision", folder.file("absent.mp4")}, Command{"prb-vision", video, "--script", text},
        Command{"prb-vision", video, "--detector", "rooms", "--models", "/absent"},
        Command{"prb-vision", video, "--model", text}, Command{"prb-vision", video, "--detector", "cats"},
        Command{"prb-vision", video, "--detector", "faces", "--cascades", "/absent"}}) {
    Command command = arguments;
    command.front() = program(command.front());
    Process process(command);
    EXPECT_EQ(process.wait(), 2) << arguments.front() << " " << arguments.back();
    const std::string said = process.errorText();
    EXPECT_EQ(said.find(arguments.front() + ": "), 0U) << said;
    EXPECT_EQ(said.find('\n'), said.size() - 1) << said;
  }
}

/** The script that plays a video through all programs, with all that it leaves in a folder. */
class Play {
 public:
  explicit Play(int frames, const std::vector<std::string>& options = {}) {
    const std::string video = folder.file("room.mkv");
    writeMeasuringVideo(video, frames, 10);
    const std::string script = folder.write("script.jsonl", walkingScript());
    std::vector<std::string> command{sourceFolder() + "/tools/video/play",
                                     "--programs",
                                     programFolder(),
                                     "--script",
                                     script,
                                     "--film",
                                     film,
                                     video};
    command.insert(command.end(), options.begin(), options.end());
    mProcess =
        std::make_unique<Process>(command, std::map<std::string, std::string>{{"TMPDIR", scratch.file("")}});
  }

  Process& process() { return *mProcess; }

  /** Processes that carry the folder of this run in their command lines. */
  int leftOver() const {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
      const std::string command = contentOf(entry.path() / "cmdline");
      count += command.find(scratch.file("")) != std::string::npos || command.find(film) != std::string::npos
                   ? 1
                   : 0;
    }
    return count;
  }

  const ScratchFolder folder;
  const ScratchFolder scratch;
  const std::string film = folder.file("films/film.mp4");

 private:
  std::unique_ptr<Process> mProcess;
};

TEST(PlayScript, FilmsAVideoAndLeavesNothingBehind) {
  for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"--live"}}) {
    Play play(kFrames, options);
    ASSERT_EQ(play.process().wait(), 0) << play.process().errorText();
    EXPECT_EQ(play.process().outputLines().back(),
              "The film is " + std::filesystem::canonical(play.film).string());
    // A camera that is far behind, on a busy machine, does not make up for it when it is to end.
    const std::string pictures = std::to_string(picturesOf(play.film).size()) + " pictures in ";
    EXPECT_EQ(play.process().outputLines().at(1).find(pictures), 0U) << pictures;
    EXPECT_EQ(play.leftOver(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(play.scratch.file("")));
  }
}

TEST(PlayScript, CtrlCEndsItWithAFilmUpToThere) {
  Play play(300);
  ASSERT_TRUE(eventually([&] { return !play.process().outputLines().empty(); }))
      << play.process().errorText();
  EXPECT_GT(play.leftOver(), 0);
  ASSERT_TRUE(eventually([&] { return std::filesystem::exists(play.film); }));
  play.process().signal(SIGINT);
  EXPECT_EQ(play.process().wait(), 0) << play.process().errorText();
  EXPECT_EQ(play.leftOver(), 0);
  EXPECT_TRUE(std::filesystem::is_empty(play.scratch.file("")));
  EXPECT_LT(picturesOf(play.film).size(), 300U);
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
