#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace fyn::productionrules {

/** What one page reads. */
class LineStream {
 public:
  virtual ~LineStream() = default;

  /** The next piece of the answer, a few kilobytes; "" when none came within `limit`, nothing at the end. */
  virtual std::optional<std::string> next(std::chrono::milliseconds limit) = 0;
};

/** What a viewer shows. All functions are called on any thread. */
struct ViewFeed {
  /** "recording" or "live". */
  std::string source;
  /** What is shown, for people. */
  std::string name;
  /** Where a page reads the lines, and how they come. */
  std::string path;
  std::string contentType;
  /** Goes out when nothing else does for a while; empty for nothing. */
  std::string heartbeat;
  /** Begins an answer; `lastEventId` is what a page that comes back has seen, "" for a new one. */
  std::function<std::unique_ptr<LineStream>(const std::string& lastEventId)> open;
  /** Ends all streams, now and for good. */
  std::function<void()> close;
};

}  // namespace fyn::productionrules
