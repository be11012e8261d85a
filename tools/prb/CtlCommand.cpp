#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <chrono>
#include <optional>

#include "config/ConfigKeys.h"
#include "model/Enums.h"
#include "platform/ServiceState.h"
#include "platform/Topics.h"
#include "tools/live/LiveBus.h"
#include "tools/live/ModeWitness.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

/** A command that is one message. */
struct ControlRow {
  const char* name;
  const char* summary;
  std::string_view topic;
  std::string_view text;
};

constexpr std::array kRows{
    ControlRow{"reset-layouts", "Forget the picture and begin anew", topics::kControl,
               control::kResetLayouts},
    ControlRow{"config-change", "Read configuration file and properties again", topics::kControl,
               control::kConfigChange},
    ControlRow{"dump-debug", "Send debug scenes and, when the dump file is enabled, write it",
               topics::kControl, control::kDumpDebug},
    ControlRow{"record-start", "Tell the service that a recording runs", topics::kRecordStart, ""},
    ControlRow{"record-stop", "Tell the service that the recording has ended", topics::kRecordStop, ""},
    ControlRow{"cameras", "Let the service log its camera configuration", topics::kDebugLogCameras, ""},
    ControlRow{"camera-id", "Let the service log the id of its own camera", topics::kDebugLogCameraId, ""},
};

struct ModeName {
  const char* name;
  FramingMode mode;
};

constexpr std::array kModes{
    ModeName{"off", FramingMode::Off},
    ModeName{"group", FramingMode::GroupFraming},
    ModeName{"speaker", FramingMode::SpeakerFraming},
    ModeName{"presenter", FramingMode::PresenterTracking},
    ModeName{"people", FramingMode::PeopleFraming},
    ModeName{"multistream", FramingMode::MultiStream},
};

std::string modeNames(const char* between) {
  std::string names;
  for (const ModeName& row : kModes) {
    names.append(names.empty() ? "" : between).append(row.name);
  }
  return names;
}

/** A short name in any letter case, or the name that stands in messages, such as "GroupFraming". */
FramingMode modeOf(const std::string& text) {
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (const ModeName& row : kModes) {
    if (lower == row.name || (row.mode != FramingMode::Off && text == framingModeToString(row.mode))) {
      return row.mode;
    }
  }
  throw UsageError("unknown mode " + text + "; the modes are " + modeNames(", "));
}

std::string modeProperty() {
  for (const ConfigKey& row : kConfigKeys) {
    if (row.name == "framingMode") {
      return std::string(row.key);
    }
  }
  throw std::logic_error("no property for the framing mode");
}

void send(LiveBus& bus, std::string_view topic, std::string_view text) {
  bus.waitUntilReady();
  bus.client().publish(std::string(topic), std::string(text));
}

/** A change of mode: the property behind it, and what the service says of it. */
class ModeChange {
 public:
  ModeChange(const PlatformOptions& options, FramingMode mode)
      : mOptions(options), mWitness(framingModeToString(mode)), mBus(options) {
    for (const std::string_view topic : ModeWitness::kTopics) {
      mBus.client().subscribe(std::string(topic), mWitness);
    }
    mBus.waitUntilReady();
    mFormer = ServiceState::current().properties().get(mKey);
    storeProperty(mOptions, mKey, std::to_string(static_cast<int>(mode)));
    reload();
  }
  ~ModeChange() { mBus.close(); }
  ModeChange(const ModeChange&) = delete;
  ModeChange& operator=(const ModeChange&) = delete;

  /** Waits until the service is in the mode; false when it does not say so. */
  bool isInForce() { return mWitness.waitForMode(kAnswerLimit); }

  void takeBack() {
    if (mFormer) {
      storeProperty(mOptions, mKey, *mFormer);
    } else {
      unsetProperty(mOptions, mKey);
    }
    reload();
  }

  std::string reason() const {
    const std::string store = mOptions.properties.empty() ? "those of this machine" : mOptions.properties;
    return mWitness.sawResults()
               ? "the service goes on in " + mWitness.mode() + ": it reads other properties than " + store +
                     " (a device elsewhere: run this command there), or follows a primary device"
               : "no vision result has come, and a service changes its mode with the next one";
  }

 private:
  void reload() { mBus.client().publish(std::string(topics::kControl), std::string(control::kConfigChange)); }

  static constexpr std::chrono::seconds kAnswerLimit{5};
  const PlatformOptions& mOptions;
  const std::string mKey = modeProperty();
  ModeWitness mWitness;
  LiveBus mBus;
  std::optional<std::string> mFormer;
};

/** A device follows its configuration, so the mode goes there; a message alone would not last. */
void runMode(const PlatformOptions& options, const std::string& name) {
  ModeChange change(options, modeOf(name));
  if (!change.isInForce()) {
    change.takeBack();
    throw std::runtime_error("the mode is not in force after 5 s, so its property is as it was: " +
                             change.reason());
  }
}

}  // namespace

void addCtlCommand(CLI::App& command, PrbContext& /*context*/) {
  const auto options = std::make_shared<PlatformOptions>();
  const auto modeText = std::make_shared<std::string>();
  command.require_subcommand(1);
  addBusOptions(command, *options);
  addPropertiesOption(command, *options);
  command.fallthrough();
  for (const ControlRow& row : kRows) {
    command.add_subcommand(row.name, row.summary)->callback([options, &row] {
      options->properties = "memory";
      LiveBus bus(*options);
      send(bus, row.topic, row.text);
    });
  }
  CLI::App* const mode = command.add_subcommand(
      "mode",
      "Change the framing mode for good: sets its property, lets the service reload and waits for the mode");
  mode->add_option("name", *modeText, "The mode")->type_name('{' + modeNames(",") + '}')->required();
  mode->callback([options, modeText] { runMode(*options, *modeText); });
  command.footer(
      "Examples:\n"
      "  prb ctl mode people --bus mqtt://localhost\n"
      "  prb ctl reset-layouts    with the bus in PRB_BUS");
}

}  // namespace fyn::productionrules
