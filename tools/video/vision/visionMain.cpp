// prb-vision: a vision pipeline that finds and tracks people in real video.
#include <CLI/CLI.hpp>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "platform/ServiceState.h"
#include "platform/StderrLog.h"
#include "platform/VisionSettings.h"
#include "tools/base/OutputFile.h"
#include "tools/base/ProgramRun.h"
#include "tools/base/StopSignals.h"
#include "tools/base/UsageError.h"
#include "tools/live/LiveBus.h"
#include "tools/meeting/MeetingOptions.h"
#include "tools/video/source/FeedInput.h"
#include "tools/video/source/SoundInput.h"
#include "tools/video/source/VideoInput.h"
#include "tools/video/vision/CascadeDetector.h"
#include "tools/video/vision/FaceNetDetector.h"
#include "tools/video/vision/HogDetector.h"
#include "tools/video/vision/NetDetector.h"
#include "tools/video/vision/Pipeline.h"
#include "tools/video/vision/ScriptedDetector.h"

namespace fyn::productionrules::video {

namespace {

// A service that starts later learns the cameras from this.
constexpr std::int64_t kCamerasAgainMs = 5000;
// How long a wish to end may take to be seen.
constexpr std::chrono::milliseconds kSlice{100};

struct VisionArguments {
  std::vector<std::string> inputs;
  std::string calibration;
  PlatformOptions platform;
  MeetingOptions recording;
  std::string detector;
  std::string models = PR_MODELS;
  std::string cascades = "/usr/share/opencv4/haarcascades";
  std::string model;
  std::string script;
  std::string feed;
  std::string sound;
  WithoutSound withoutSound = WithoutSound::nobody;
  int every = 1;
};

/** What serves when nobody has chosen. */
std::unique_ptr<PersonDetector> usualDetector(const std::string& network) {
  if (std::filesystem::exists(network)) {
    return std::make_unique<FaceNetDetector>(network);
  }
  PRB_LOGW("prb-vision",
           "%s is not there, so only people whose whole body is in view are found; tools/setup/fetch.sh "
           "model fetches it",
           network.c_str());
  return std::make_unique<HogDetector>();
}

std::unique_ptr<PersonDetector> makeDetector(const VisionArguments& arguments) {
  if (!arguments.script.empty()) {
    std::ifstream script(arguments.script);
    if (!script) {
      throw UsageError(arguments.script + ": cannot be read");
    }
    return std::make_unique<ScriptedDetector>(script, arguments.script);
  }
  if (!arguments.model.empty()) {
    return std::make_unique<NetDetector>(readNetModel(arguments.model));
  }
  if (arguments.detector == "faces") {
    return std::make_unique<CascadeDetector>(arguments.cascades);
  }
  if (arguments.detector == "bodies") {
    return std::make_unique<HogDetector>();
  }
  const std::string network = arguments.models + "/faces.onnx";
  if (arguments.detector == "rooms") {
    return std::make_unique<FaceNetDetector>(network);
  }
  return usualDetector(network);
}

/** The pictures of videos of which each is one camera, and the sound. */
class Videos {
 public:
  Videos(const std::vector<CameraInput>& inputs, const std::string& sound) : mSound(sound, inputs) {
    for (const CameraInput& camera : inputs) {
      mVideos.push_back(std::make_unique<VideoInput>(camera.input));
    }
    mPictures.resize(mVideos.size());
  }

  bool isFromDevice() const { return mVideos.front()->isLive(); }

  /** When frame `number` of a file was taken, counted from its first. */
  std::int64_t timeOf(std::int64_t number) const {
    return std::llround(static_cast<double>(number - 1) * 1000.0 / mVideos.front()->rate());
  }

  /** False at the end of the first video that ends. */
  bool next() {
    for (std::size_t camera = 0; camera < mVideos.size(); ++camera) {
      if (!mVideos[camera]->next(mPictures[camera])) {
        return false;
      }
    }
    ++mNumber;
    return true;
  }

  /** The frame read last, as taken at `ms`. */
  FedFrame frame(std::int64_t ms) { return {mNumber, ms, mPictures, mSound.speechAt(timeOf(mNumber))}; }
  std::int64_t number() const { return mNumber; }

 private:
  std::vector<std::unique_ptr<VideoInput>> mVideos;
  std::vector<cv::Mat> mPictures;
  SoundInput mSound;
  std::int64_t mNumber = 0;
};

/** Puts on the bus what is seen, and every few seconds of which cameras. */
class Publisher {
 public:
  Publisher(Pipeline& pipeline, const PlatformOptions& platform, StopSignals& stop)
      : mPipeline(pipeline), mBus(platform) {
    mBus.waitUntilReady(stop);
  }

  void publish(const FedFrame& frame) {
    if (frame.ms >= mCamerasDue) {
      mCamerasDue = frame.ms + kCamerasAgainMs;
      for (const BusMessage& message : cameraMessages(mPipeline.cameras())) {
        mBus.client().publish(message.topic, message.payload);
      }
    }
    const BusMessage message = visionMessage(mPipeline.look(frame), mPipeline.cameras());
    mBus.client().publish(message.topic, message.payload);
  }

 private:
  Pipeline& mPipeline;
  LiveBus mBus;
  std::int64_t mCamerasDue = 0;
};

/** Every frame as fast as possible into a recording; its times are those of the video. A wish to end leaves
 * it at what is seen by then. */
void writeRecording(const VisionArguments& arguments, StopSignals& stop) {
  const std::vector<CameraInput> inputs = cameraInputs(arguments.inputs, arguments.calibration);
  Videos videos(inputs, arguments.sound);
  Pipeline pipeline(inputs, makeDetector(arguments), arguments.every, false, arguments.withoutSound);
  if (videos.isFromDevice()) {
    throw UsageError("a recording is made of files; record a device's results with prb record");
  }
  OutputFile output(arguments.recording.output, arguments.recording.rules, std::cout);
  RecordingWriter writer(output.stream());
  writeMeetingStart(writer, arguments.recording, pipeline.cameras());
  while (!stop.waitFor(std::chrono::nanoseconds(0)) && videos.next()) {
    const std::int64_t ms = videos.timeOf(videos.number());
    writer.write({ms, visionMessage(pipeline.look(videos.frame(ms)), pipeline.cameras())});
  }
  output.finish();
}

/** Onto the bus, each frame at its time. The timestamps of a file are its own, counted from the start. */
void publish(const VisionArguments& arguments, StopSignals& stop) {
  const std::vector<CameraInput> inputs = cameraInputs(arguments.inputs, arguments.calibration);
  Videos videos(inputs, arguments.sound);
  Pipeline pipeline(inputs, makeDetector(arguments), arguments.every, true, arguments.withoutSound);
  Publisher publisher(pipeline, arguments.platform, stop);
  const Clock& wall = ServiceState::current().clock();
  const std::int64_t startWall = wall.wallMs();
  const auto start = std::chrono::steady_clock::now();
  while (videos.next()) {
    const std::int64_t fromStart = videos.timeOf(videos.number());
    const auto due = videos.isFromDevice() ? start : start + std::chrono::milliseconds(fromStart);
    if (stop.waitFor(due - std::chrono::steady_clock::now())) {
      return;
    }
    publisher.publish(videos.frame(videos.isFromDevice() ? wall.wallMs() : startWall + fromStart));
  }
}

/** Onto the bus, each frame that prb-camera hands over, with its number and time, until it is told to end. */
void publishFed(const VisionArguments& arguments, StopSignals& stop) {
  FeedInput feed(arguments.feed);
  std::unique_ptr<Pipeline> pipeline;
  std::unique_ptr<Publisher> publisher;
  while (!stop.waitFor(std::chrono::nanoseconds(0))) {
    const std::optional<FedFrame> frame = feed.next(kSlice);
    if (!frame) {
      continue;
    }
    if (!pipeline || pipeline->cameras().size() != frame->pictures.size()) {
      publisher.reset();
      pipeline = std::make_unique<Pipeline>(feed.cameras(), makeDetector(arguments), arguments.every, true,
                                            arguments.withoutSound);
      publisher = std::make_unique<Publisher>(*pipeline, arguments.platform, stop);
    }
    publisher->publish(*frame);
  }
}

void declareOptions(CLI::App& app, VisionArguments& arguments) {
  app.set_version_flag("--version", "prb-vision " PR_VERSION);
  app.add_option("inputs", arguments.inputs,
                 "Video file, device such as /dev/video0, or image sequence such as room-%04d.png; one per "
                 "camera, camera 0 first")
      ->type_name("INPUT");
  app.add_option("--cameras", arguments.calibration,
                 "Calibration file that names the inputs instead, for cameras that see the same persons")
      ->type_name("FILE");
  app.add_option("--feed", arguments.feed,
                 "Look at the frames that prb-camera hands over on this socket instead")
      ->type_name("SOCKET");
  addBusOptions(app, arguments.platform);
  addMeetingOptions(app, arguments.recording);
  app.add_option("--detector", arguments.detector,
                 "rooms: whose face is seen, by a small network, the default where its file is there; "
                 "bodies: who stands or walks with the whole body in view, also far away or from behind; "
                 "faces: as rooms, without the network, and worse")
      ->check(CLI::IsMember({"rooms", "bodies", "faces"}));
  app.add_option("--models", arguments.models, "Folder of faces.onnx, for rooms")
      ->type_name("FOLDER")
      ->capture_default_str();
  addSoundOption(app, arguments.sound);
  app.add_option("--without-sound", arguments.withoutSound,
                 "Who is taken to speak where there is no sound: nobody, or mouths: whose mouth moves most")
      ->transform(CLI::CheckedTransformer(std::map<std::string, WithoutSound>{
          {"nobody", WithoutSound::nobody}, {"mouths", WithoutSound::liveliestMouth}}))
      ->type_name("WHO")
      ->default_str("nobody");
  app.add_option("--cascades", arguments.cascades, "Folder of OpenCV's cascades, for faces")
      ->type_name("FOLDER")
      ->capture_default_str();
  app.add_option("--model", arguments.model, "Description of a neural network to use instead, JSON")
      ->type_name("FILE");
  app.add_option("--script", arguments.script, "See what this script says instead, JSON Lines")
      ->type_name("FILE");
  app.add_option("--detect-every", arguments.every,
                 "Look at every Nth frame only; in between persons move on as they did")
      ->type_name("N")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  app.footer(
      "With --bus it publishes each frame's result at its time and looks at a new frame whenever it is done "
      "with the one\nbefore. Without, it writes a recording (-o) as fast as it can, looks at every frame, "
      "and writes the same every time.\n\nExamples:\n"
      "  prb-vision --feed room.sock --bus mqtt://127.0.0.1:1883\n"
      "  prb-vision room.mp4 --detect-every 3 -o room.jsonl\n"
      "  prb-vision --cameras side-by-side.json -o room.jsonl");
}

void runVision(const VisionArguments& arguments) {
  // Before the video library starts threads, which would take the signals.
  StopSignals stop;
  if (arguments.platform.bus == "embedded") {
    if (!arguments.feed.empty()) {
      throw UsageError("--feed needs --bus: what is seen of a feed has no place in a recording");
    }
    writeRecording(arguments, stop);
    return;
  }
  if (arguments.feed.empty()) {
    publish(arguments, stop);
  } else {
    publishFed(arguments, stop);
  }
}

}  // namespace

}  // namespace fyn::productionrules::video

// Without memory for the options there is nothing left to end well.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  namespace video = fyn::productionrules::video;
  CLI::App app("Finds and tracks people in real video and reports them as vision results.");
  video::VisionArguments arguments;
  video::silenceVideoLibraries();
  video::declareOptions(app, arguments);
  return fyn::productionrules::runProgram("prb-vision", app, argc, argv,
                                          [&arguments] { video::runVision(arguments); });
}
