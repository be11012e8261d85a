#pragma once

#include <fstream>
#include <map>
#include <string>
#include <tuple>

#include "tools/report/MeasureRecordings.h"
#include "tools/tune/SearchSpace.h"

namespace fyn::productionrules {

struct TuneRecording {
  std::string path;
  /** Stands for its text, so that a recording that was made anew is measured anew. */
  std::string fingerprint;
};

/** Raises UsageError when it cannot be read. */
TuneRecording tuneRecording(const std::string& path);

/** One replay of a search: a candidate on a recording. */
struct TuneJob {
  Candidate candidate;
  TuneRecording recording;
};

/** Stands for what all candidates share: the text of the configuration and the properties. */
std::string setupFingerprint(const MeasuredSetup& setup);

/** The line (without its end) that keeps what a job measured. */
std::string tuneResultLine(const TuneJob& job, const std::string& fingerprint, const Measurement& measured);

/**
 * The file that keeps what is measured: one JSON line per job, appended as soon as the job is done, so that
 * an interrupted search goes on where it stopped.
 */
class TuneResults {
 public:
  /**
   * Reads what the file holds, if it is there. A last line without its end (an interrupted write) is dropped.
   * Raises UsageError "FILE:LINE: FAULT" for any other line that is no result, or that was made with another
   * setup.
   */
  TuneResults(std::string path, std::string fingerprint);

  /** Null when the job is not done. */
  const Measurement* find(const TuneJob& job) const;

  /** Keeps what a job measured. Raises std::runtime_error when it cannot be written. */
  void add(const TuneJob& job, const Measurement& measured);

 private:
  /** Candidate, and path and fingerprint of the recording. */
  using Key = std::tuple<std::string, std::string, std::string>;

  static Key keyOf(const TuneJob& job);

  void read();
  void take(const std::string& line);

  const std::string mPath;
  const std::string mFingerprint;
  std::map<Key, Measurement> mDone;
  std::ofstream mFile;
};

}  // namespace fyn::productionrules
