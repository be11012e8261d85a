#include <CLI/CLI.hpp>

#include "tools/base/InputFile.h"
#include "tools/base/OutputFile.h"
#include "tools/base/ProgressBar.h"
#include "tools/meeting/MeetingOptions.h"
#include "tools/meeting/TrackMerger.h"
#include "tools/meeting/TruthLines.h"
#include "tools/meeting/Turns.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

constexpr int kMostFps = 240;

struct ImportOptions {
  std::vector<std::string> tracks;
  std::vector<std::string> poses;
  std::string turns;
  std::string image;
  MergeOptions merge;
  MeetingOptions meeting;
};

std::vector<CameraTracks> readCameras(const ImportOptions& options, PrbContext& context) {
  std::optional<Dimension> image;
  if (!options.image.empty() && !(image = parseImageSize(options.image))) {
    throw UsageError("--image must be WIDTHxHEIGHT in pixels, not '" + options.image + "'");
  }
  if (options.poses.size() > options.tracks.size()) {
    throw UsageError("more pose files than track files");
  }
  std::vector<CameraTracks> cameras;
  for (std::size_t camera = 0; camera < options.tracks.size(); ++camera) {
    InputFile tracks(options.tracks[camera], context.in);
    cameras.push_back(readTracks(tracks.stream(), tracks.name(), image));
    if (camera < options.poses.size()) {
      InputFile poses(options.poses[camera], context.in);
      addPoses(poses.stream(), poses.name(), cameras.back());
    }
  }
  return cameras;
}

void runImport(ImportOptions& options, PrbContext& context) {
  std::vector<std::string>& inputs = options.meeting.rules.inputs;
  inputs = options.tracks;
  inputs.insert(inputs.end(), options.poses.begin(), options.poses.end());
  inputs.push_back(options.turns);
  options.meeting.rules.check(options.meeting.output);
  const std::vector<CameraTracks> tracks = readCameras(options, context);
  Speech speech;
  if (!options.turns.empty()) {
    InputFile turns(options.turns, context.in);
    speech = Speech(spokenBy(personsByPresence(tracks), readTurns(turns.stream(), turns.name())));
  }
  std::vector<MeetingCamera> cameras;
  cameras.reserve(tracks.size());
  for (const CameraTracks& camera : tracks) {
    cameras.push_back({camera.image});
  }
  const TrackMerger merger(tracks, speech, options.merge);
  OutputFile output(options.meeting.output, options.meeting.rules, context.out);
  RecordingWriter writer(output.stream());
  writeMeetingStart(writer, options.meeting, cameras);
  TruthLines truth(writer);
  ProgressBar bar(context.err, context.errIsTerminal, "import", merger.times().size());
  for (std::size_t index = 0; index < merger.times().size(); ++index) {
    const VisionResult result = merger.resultAt(index);
    if (options.meeting.withTruth) {
      truth.tell(result.t, truthOf(result));
    }
    writer.write({result.t, visionMessage(result, cameras)});
    bar.update(index + 1);
  }
  output.finish();
}

}  // namespace

void addImportCommand(CLI::App& command, PrbContext& context) {
  const auto options = std::make_shared<ImportOptions>();
  command
      .add_option("tracks", options->tracks,
                  "Tracked heads, one file per camera (camera 0 first): rows "
                  "t_ms,person_id,left,top,right,bottom; the same person has the same id in all files")
      ->type_name("TRACKS.csv")
      ->required();
  command
      .add_option("--turns", options->turns,
                  "Speaker turns: rows start_ms,end_ms,speaker. The speakers, in the order of their first "
                  "turn, are given to the persons, longest in view first: an invented pairing")
      ->type_name("TURNS.csv");
  command
      .add_option("--pose", options->poses,
                  "Poses of the heads, one file per camera: rows t_ms,person_id,yaw_deg,pitch_deg")
      ->type_name("POSE.csv")
      ->allow_extra_args(false);
  command
      .add_option(
          "--fps", options->merge.fps,
          "Results per second; each repeats the latest boxes. Without it, one result for each frame time")
      ->type_name("N")
      ->check(CLI::Range(1, kMostFps));
  command
      .add_option("--max-gap", options->merge.longestGap,
                  "How long a camera's latest boxes stand when no newer ones come; without it, one and a "
                  "half times the camera's frame interval")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{0}, std::int64_t{3600000}));
  command.add_option("--image", options->image, "Image size of files without a comment '# image WxH'")
      ->type_name("WxH");
  addTruthOption(command, options->meeting);
  addMeetingOptions(command, options->meeting);
  command.footer(
      "Examples:\n"
      "  prb import room.csv --fps 30 -o room.jsonl\n"
      "  prb import front.csv side.csv --turns turns.csv -o room.jsonl    two cameras of one room");
  command.callback([options, &context] { runImport(*options, context); });
}

}  // namespace fyn::productionrules
