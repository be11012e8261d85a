#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/base/PrbContext.h"
#include "tools/base/WorkerPool.h"
#include "tools/recording/RecordingEvent.h"
#include "tools/report/Measurement.h"

namespace fyn::productionrules {

/** What the service runs with while it is measured. */
struct MeasuredSetup {
  /** Content of the configuration file; nothing for what the recording says. */
  std::optional<std::string> configuration;
  KeyValues properties;
  /** Only this output stream counts; nothing for all of them. */
  std::optional<int> stream = std::nullopt;
};

/** A recording and what was measured on it. */
struct MeasuredRecording {
  std::string name = {};
  Measurement measurement = {};
  /** What the service printed meanwhile. */
  std::string printed = {};
  /** What is to be said of the image sizes; "" for nothing. */
  std::string sizeHint = {};
  /** The framing mode at the end; "" when the service never ran. */
  std::string mode = {};
  /** The settings in force at the end that are not the default, properties too. */
  KeyValues settings = {};
};

/** How many setups one reading of a recording should serve, so that all threads (0 for one per processor)
 * have work and nothing is read more often than that needs. */
std::size_t setupsAtOnce(std::size_t recordings, std::size_t setups, unsigned workers);

/** Reads one recording ("-" for `standardInput`), as far as it is not given up, and replays it with each of
 * the setups, on any thread. Raises UsageError for a bad one. */
std::vector<MeasuredRecording> measureRecording(const std::string& path,
                                                const std::vector<MeasuredSetup>& setups,
                                                std::istream& standardInput, const GivenUp& isGivenUp);

/**
 * Replays every recording with every setup, on several threads: result [setup][recording]. A bar on the
 * terminal shows how far it is.
 */
std::vector<std::vector<MeasuredRecording>> measureRecordings(const std::vector<std::string>& paths,
                                                              const std::vector<MeasuredSetup>& setups,
                                                              PrbContext& context);

/** Says so, and returns true, when a recording holds no vision results: what was measured on it is nothing.
 */
bool noteWithoutResults(const std::string& name, const Measurement& measured, PrbContext& context);

/** The figures of all recordings together: each counts by its length. */
Measurement overall(const std::vector<MeasuredRecording>& recordings);

/** Raises UsageError when standard input is named more than once. */
void checkRecordingNames(const std::vector<std::string>& paths);

}  // namespace fyn::productionrules
