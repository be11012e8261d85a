#pragma once

#include <cstdint>
#include <fstream>
#include <iosfwd>
#include <istream>
#include <memory>
#include <string>

#include "tools/base/UnpackingBuffer.h"

namespace fyn::productionrules {

/** An input file by its path, or standard input for "-", unpacked when its bytes are those of gzip or zstd.
 * Raises UsageError when it cannot be opened. */
class InputFile {
 public:
  InputFile(const std::string& path, std::istream& standardInput);

  /** Waits for the first byte of standard input. */
  std::istream& stream();

  /** How errors name it. */
  const std::string& name() const { return mName; }

  /** Bytes of what is read, 0 when not known (a pipe, a packed file). */
  std::uint64_t size() const { return mSize; }

 private:
  void unpack();

  std::string mName;
  std::ifstream mFile;
  std::istream* mStream;
  bool mIsBegun = false;
  std::unique_ptr<UnpackingBuffer> mUnpacking;
  std::istream mUnpacked{nullptr};
  std::uint64_t mSize = 0;
};

}  // namespace fyn::productionrules
