#pragma once

#include <fstream>
#include <memory>
#include <ostream>
#include <string>

#include "tools/base/OutputRules.h"
#include "tools/base/PackingBuffer.h"

namespace fyn::productionrules {

/**
 * A file that is written beside its place and put there when it is worth it; until then, what stands there
 * stays as it is. One that is never put in place is gone with the object, and where the file system can, also
 * when the program is killed. A device or a pipe is written to at once.
 */
class NewFile {
 public:
  /** Raises UsageError when the rules forbid it or it cannot be made. */
  NewFile(const std::string& path, const OutputRules& rules);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /** What is written there is packed when the name ends with .gz or .zst. */
  std::ostream& stream() { return mStream; }

  /** Writes out everything; nothing may be written after it. False when something could not be written. */
  bool finish();

  /** Puts it in its place; what is written later goes there too. Raises std::runtime_error when that fails.
   */
  void putInPlace();

 private:
  /** The place itself, not a link to it. */
  std::string mPlace;
  /** Its name until then; empty when it is written at its place. */
  std::string mBeside;
  /** It has no name yet; negative when it has. */
  int mUnnamed = -1;
  std::ofstream mFile;
  std::unique_ptr<PackingBuffer> mPacking;
  std::ostream mStream{nullptr};
};

/** For a look before long work whose result `path` takes: raises UsageError when the rules forbid it or it
 * cannot be made. Nothing is left behind. */
void requireWritable(const std::string& path, const OutputRules& rules);

}  // namespace fyn::productionrules
