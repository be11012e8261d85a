#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/view/ViewServer.h"

namespace CLI {
class App;
}

namespace fyn::productionrules {

/** Where a command shows the viewer page, as options say it. */
struct ViewPageOptions {
  std::string listen = "127.0.0.1";
  int port = 0;
  /** As in ViewServerOptions; no option sets them. */
  std::string question = {};
  std::optional<SideBySide> sides = {};
  std::vector<std::string> videos = {};
};

/** Gives `command` the options --port and --listen. */
void addViewPageOptions(CLI::App& command, ViewPageOptions& options);

/** A viewer page that is being served. */
struct ViewPage {
  std::unique_ptr<ViewServer> server;
  /** What a person opens, with the token unless it came from outside. */
  std::string address;
};

/**
 * Serves the page. Its token is that of the environment variable PRB_VIEW_TOKEN; an address that others reach
 * gets a random one where there is none. Raises UsageError for what cannot be used, and std::runtime_error
 * when the port cannot be had.
 */
ViewPage showViewPage(LineLog& lines, std::string name, const ViewPageOptions& options);

}  // namespace fyn::productionrules
