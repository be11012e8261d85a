#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "tools/view/LineStream.h"
#include "tools/view/ViewLine.h"

namespace fyn::productionrules {

/**
 * Keeps lines in a nameless temporary file, so that their number does not matter and every page reads them
 * from the start, even while they are still being written. Used from any thread.
 */
class LineSpool final : public LineSink {
 public:
  /** Raises std::runtime_error when there is no temporary file to be had. */
  LineSpool();
  ~LineSpool() override;
  LineSpool(const LineSpool&) = delete;
  LineSpool& operator=(const LineSpool&) = delete;

  /** Raises std::runtime_error when the line cannot be kept (a full disk). */
  void put(ViewLine line) override;

  /** There are no more lines: streams end when they have read all. */
  void finish();

  std::unique_ptr<LineStream> open();

  /** Ends every stream, now and for good. */
  void close();

  /** The feed that shows these lines. */
  ViewFeed feed(std::string name);

 private:
  class Reader;

  void flush();

  const int mFile;
  std::mutex mMutex;
  std::condition_variable mMore;
  /** Not yet in the file. */
  std::string mTail;
  std::int64_t mSize = 0;
  bool mFinished = false;
  bool mClosed = false;
};

}  // namespace fyn::productionrules
