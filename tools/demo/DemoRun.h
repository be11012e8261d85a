#pragma once

#include <optional>
#include <string>

#include "tools/base/OutputRules.h"
#include "tools/base/PrbContext.h"
#include "tools/meeting/Simulation.h"
#include "tools/view/ViewPage.h"

namespace fyn::productionrules {

/** What is played and shown, as options say it. */
struct DemoOptions {
  /** The scene documents of a demo that was told no other file: replaced by the next one. */
  static constexpr const char* kOwnScenes = "out/scenes.jsonl";

  DemoOptions() { meeting.minutes = 3; }

  /** A recording instead of a simulated meeting; empty for none. */
  std::string recording;
  SimulationOptions meeting;
  /** Without a number as many as the mode is made for. */
  std::optional<int> people;
  /** What a detector behind a tracker leaves; the noise of a bare one hides what the service does. */
  std::string noise = "low";
  std::string mode = "group";
  bool once = false;
  bool fast = false;
  /** Files: the scene documents that are written, and the configuration that the service reads. */
  std::string scenes = kOwnScenes;
  std::string config;
  /** What the service reads when no file is named. */
  std::string preset = "recommended";
  bool view = false;
  OutputRules rules;
  ViewPageOptions page;
};

/** Plays the meeting round after round and prints a line per change of the picture, until it is told to end.
 */
void runDemo(const DemoOptions& options, PrbContext& context);

}  // namespace fyn::productionrules
