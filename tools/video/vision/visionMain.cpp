// prb-vision: a vision pipeline that finds and tracks people in real video.
#include <CLI/CLI.hpp>
#include <chrono>
#include <iostream>

#include "platform/ServiceState.h"
#include "tools/base/OutputFile.h"
#include "tools/base/ProgramRun.h"
#include "tools/base/StopSignals.h"
#include "tools/base/UsageError.h"
#include "tools/video/source/FeedInput.h"
#include "tools/video/vision/CameraVideos.h"
#include "tools/video/vision/ChosenDetector.h"
#include "tools/video/vision/Pipeline.h"
#include "tools/video/vision/VisionArguments.h"
#include "tools/video/vision/VisionPublisher.h"

namespace fyn::productionrules::video {

namespace {

// How long a wish to end may take to be seen.
constexpr std::chrono::milliseconds kSlice{100};

/** Every frame as fast as possible into a recording; its times are those of the video. A wish to end leaves
 * it at what is seen by then. */
void writeRecording(const VisionArguments& arguments, StopSignals& stop) {
  const std::vector<CameraInput> inputs = cameraInputs(arguments.inputs, arguments.calibration);
  CameraVideos videos(inputs, arguments.sound);
  Pipeline pipeline(inputs, makeDetector(arguments), arguments.every, false, arguments.speakerWithoutSound());
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
  CameraVideos videos(inputs, arguments.sound);
  Pipeline pipeline(inputs, makeDetector(arguments), arguments.every, true, arguments.speakerWithoutSound());
  VisionPublisher publisher(pipeline, arguments.platform, stop);
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
  std::unique_ptr<VisionPublisher> publisher;
  while (!stop.waitFor(std::chrono::nanoseconds(0))) {
    const std::optional<FedFrame> frame = feed.next(kSlice);
    if (!frame) {
      continue;
    }
    if (!pipeline || pipeline->cameras().size() != frame->pictures.size()) {
      publisher.reset();
      pipeline = std::make_unique<Pipeline>(feed.cameras(), makeDetector(arguments), arguments.every, true,
                                            arguments.speakerWithoutSound());
      publisher = std::make_unique<VisionPublisher>(*pipeline, arguments.platform, stop);
    }
    publisher->publish(*frame);
  }
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
  app.set_version_flag("--version", "prb-vision " PR_VERSION);
  arguments.models = PR_MODELS;
  video::addVisionOptions(app, arguments);
  return fyn::productionrules::runProgram("prb-vision", app, argc, argv,
                                          [&arguments] { video::runVision(arguments); });
}
