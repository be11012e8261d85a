#pragma once

#include <fstream>
#include <iosfwd>
#include <string>

namespace fyn::productionrules {

/**
 * Raises UsageError when an output file could not be made; for a look before long work whose result it takes.
 * Nothing is written. "-" and "" are always good.
 */
void requireWritable(const std::string& path);

/** An output file by its path, or standard output for "-". Raises UsageError when it cannot be made. */
class OutputFile {
 public:
  OutputFile(const std::string& path, std::ostream& standardOutput);

  std::ostream& stream() { return *mStream; }
  const std::string& name() const { return mName; }

  /** Writes out everything; raises std::runtime_error when something could not be written (a full disk). */
  void finish();

 private:
  std::string mName;
  std::ofstream mFile;
  std::ostream* mStream;
};

}  // namespace fyn::productionrules
