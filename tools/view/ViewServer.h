#pragma once

#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/view/LineLog.h"

namespace fyn::productionrules {

/** What stands beside the first lines, to be compared with them. */
struct SideBySide {
  struct Side {
    /** What tells it from the other, for people. */
    std::string name;
    /** As in ViewServerOptions. */
    std::string question;
  };
  std::array<Side, 2> sides;
  /** The second side's; outlive the server. */
  LineLog* lines = nullptr;
};

struct ViewServerOptions {
  /** A numeric address. */
  std::string address = "127.0.0.1";
  /** 0 for any that is free. */
  int port = 0;
  /** What a page must know; "" for nothing, as long as only this machine is reached. */
  std::string token;
  /** How long a whole request may take to come. */
  std::chrono::milliseconds requestLimit = std::chrono::seconds(5);
  /** The command line that answers questions about a moment of what is shown, but for its time; "" for none.
   */
  std::string question = {};
  /** When two recordings are shown, or one in two ways. */
  std::optional<SideBySide> sides = {};
  /** Files with what cameras 0, 1, ... saw, to be shown under the boxes. */
  std::vector<std::string> videos = {};
};

/**
 * Serves the viewer page and its lines (viewer/protocol.md) from threads of its own. An address that others
 * reach always needs a token.
 */
class ViewServer {
 public:
  /** Pages that read lines at one time; one more is turned away. */
  static constexpr int kMostStreams = 24;

  /** `name` says what is shown, for people; `lines` outlives the server. Listens when it returns. Raises
   * UsageError for a video that cannot be read, std::runtime_error when the port cannot be had, and
   * std::invalid_argument when others could read without a token. */
  ViewServer(LineLog& lines, std::string name, const ViewServerOptions& options);

  /** Ends all answers, also those that nobody reads, and all threads. */
  ~ViewServer();
  ViewServer(const ViewServer&) = delete;
  ViewServer& operator=(const ViewServer&) = delete;

  int port() const;

  /** Where a browser finds the page, without the token. */
  std::string url() const;

 private:
  class Pages;
  std::unique_ptr<Pages> mPages;
};

}  // namespace fyn::productionrules
