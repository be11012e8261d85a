#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "platform/Platform.h"

namespace fyn::productionrules {

/** A debug dump: a text file of lines, flushed line by line so that it survives a crash. */
class FynFileWriter {
 public:
  /**
   * Opens NAME_WALLTIME.txt (milliseconds since 1970) in the device's dump folder, or in the one that the
   * environment variable FYN_DUMP_DIR names. Success and failure are logged.
   */
  FynFileWriter(const std::string& name, const DumpOpener& open);

  /** Writes `text` and a newline; a message on standard error when the file is not open, and one, not one per
   * line, when it can no longer be written (a full disk) or would grow beyond `kMostBytes`. */
  void write(const std::string& text);

  /** What a dump that nobody ends may take of the device's disk. */
  static constexpr std::size_t kMostBytes = 256'000'000;

 private:
  std::string mPath;
  std::unique_ptr<std::ostream> mFile;
  std::size_t mWritten = 0;
  bool mHasEnded = false;
};

}  // namespace fyn::productionrules
