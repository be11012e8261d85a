#pragma once

#include <cstdint>
#include <fstream>
#include <iosfwd>
#include <string>

namespace fyn::productionrules {

/** An input file by its path, or standard input for "-". Raises UsageError when it cannot be opened. */
class InputFile {
 public:
  InputFile(const std::string& path, std::istream& standardInput);

  std::istream& stream() { return *mStream; }

  /** How errors name it. */
  const std::string& name() const { return mName; }

  /** Bytes, 0 when not known (a pipe). */
  std::uint64_t size() const { return mSize; }

 private:
  std::string mName;
  std::ifstream mFile;
  std::istream* mStream;
  std::uint64_t mSize = 0;
};

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
