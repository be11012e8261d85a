#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>

#include "platform/SteadyClock.h"
#include "tools/base/StopSignals.h"
#include "tools/base/Terminal.h"
#include "tools/live/LiveBus.h"
#include "tools/live/WatchState.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

constexpr std::chrono::milliseconds kScreenInterval{500};

void show(WatchState& state, PrbContext& context) {
  if (context.outIsTerminal) {
    context.out << drawnScreen(state.screen(kScreenInterval.count()), terminalSize(STDOUT_FILENO))
                << std::flush;
    return;
  }
  for (const std::string& line : state.takeLines()) {
    context.out << line << '\n';
  }
  context.out << std::flush;
}

void runWatch(const PlatformOptions& options, PrbContext& context) {
  StopSignals stop;
  // Made before the bus, so that it outlives the deliveries.
  WatchState state(std::make_shared<SteadyClock>());
  LiveBus bus(options);
  for (const std::string& topic : WatchState::topics()) {
    bus.client().subscribe(topic, state);
  }
  bus.waitUntilReady(stop);
  while (!stop.waitFor(kScreenInterval)) {
    show(state, context);
  }
  if (context.outIsTerminal) {
    context.out << '\n';
  }
}

}  // namespace

void addWatchCommand(CLI::App& command, PrbContext& context) {
  const auto options = std::make_shared<PlatformOptions>();
  addBusOptions(command, *options);
  command.footer(
      "Examples:\n"
      "  prb watch --bus mqtt://localhost             one screen that updates\n"
      "  prb watch --bus mqtt://localhost | tee log   one line for each picture");
  command.callback([options, &context] { runWatch(*options, context); });
}

}  // namespace fyn::productionrules
