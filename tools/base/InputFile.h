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

}  // namespace fyn::productionrules
