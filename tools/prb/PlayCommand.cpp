#include <CLI/CLI.hpp>
#include <optional>

#include "tools/base/InputFile.h"
#include "tools/base/ProgressBar.h"
#include "tools/base/RealTimePace.h"
#include "tools/base/StopSignals.h"
#include "tools/base/StoppableInput.h"
#include "tools/live/LiveBus.h"
#include "tools/prb/Commands.h"
#include "tools/recording/RecordingReader.h"

namespace fyn::productionrules {

namespace {

/** No machine keeps up with it. */
constexpr double kMostSpeed = 1000;

struct PlayOptions {
  PlatformOptions platform;
  std::string input;
  double speed = 1;
  bool loop = false;
};

/** Publishes the messages of one pass at their times. Returns false when there is no use in another: it was
 * told to stop, or the pass took no time. */
class Player {
 public:
  Player(LiveBus& bus, StopSignals& stop, double speed) : mBus(bus), mStop(stop), mSpeed(speed) {}

  bool play(RecordingReader& reader, ProgressBar& bar) {
    const RealTimePace pace(mStop, mSpeed);
    RecordingEvent event;
    std::optional<std::int64_t> first;
    while (reader.next(event)) {
      first = first.value_or(event.t);
      if (!pace.waitUntil(event.t - *first)) {
        return false;
      }
      bar.update(reader.bytesRead());
      if (const auto* const message = std::get_if<BusMessage>(&event.what)) {
        mBus.client().publish(message->topic, message->payload);
        ++mMessages;
      } else if (!std::holds_alternative<TimePasses>(event.what) && !isRemark(event)) {
        ++mPassedOver;
      }
    }
    return first && event.t > *first;
  }

  std::uint64_t messages() const { return mMessages; }

  /** Events that no bus carries. */
  std::uint64_t passedOver() const { return mPassedOver; }

 private:
  LiveBus& mBus;
  StopSignals& mStop;
  const double mSpeed;
  std::uint64_t mMessages = 0;
  std::uint64_t mPassedOver = 0;
};

void runPlay(const PlayOptions& options, PrbContext& context) {
  if (options.loop && options.input == "-") {
    throw UsageError("standard input cannot be played in a loop");
  }
  StopSignals stop;
  StoppableInput standardInput(context.in, stop);
  InputFile check(options.input, standardInput.stream());
  LiveBus bus(options.platform);
  bus.waitUntilReady(stop);
  Player player(bus, stop, options.speed);
  bool goesOn = true;
  do {
    const std::uint64_t before = player.messages();
    InputFile input(options.input, standardInput.stream());
    RecordingReader reader(input.stream(), input.name());
    ProgressBar bar(context.err, context.errIsTerminal, "play", input.size());
    goesOn = player.play(reader, bar) && player.messages() > before;
  } while (options.loop && goesOn);
  context.err << player.messages() << " messages played";
  if (player.passedOver() != 0) {
    context.err << "; " << player.passedOver() << " property, config and provider lines passed over";
  }
  context.err << '\n';
  if (const std::uint64_t lost = bus.close(); lost != 0) {
    throw std::runtime_error(std::to_string(lost) +
                             " of them were never taken by the broker: it was away, or slower " +
                             "than --speed asks for");
  }
}

}  // namespace

void addPlayCommand(CLI::App& command, PrbContext& context) {
  const auto options = std::make_shared<PlayOptions>();
  command.add_option("recording", options->input, "The recording to play; '-' is standard input")
      ->type_name("RECORDING")
      ->required();
  command.add_option("--speed", options->speed, "Times real time, from 0.01 to 1000; max is 1000")
      ->type_name("X")
      ->transform(CLI::Transformer(std::map<std::string, double>{{"max", kMostSpeed}}).description(""))
      ->check(CLI::Range(0.01, kMostSpeed).description(""))
      ->capture_default_str();
  command.add_flag("--loop", options->loop, "Begin again at the end, until a signal comes");
  addBusOptions(command, options->platform);
  command.footer(
      "Examples:\n"
      "  prb play meeting.jsonl --bus mqtt://localhost\n"
      "  prb play meeting.jsonl --bus mqtt://localhost --speed 4 --loop");
  command.callback([options, &context] { runPlay(*options, context); });
}

}  // namespace fyn::productionrules
