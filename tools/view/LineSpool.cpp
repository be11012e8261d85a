#include "tools/view/LineSpool.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace fyn::productionrules {

namespace {

constexpr std::size_t kPiece = 65'536;

/** After so long a silence a part of a piece is handed on. */
constexpr std::chrono::milliseconds kMostPatience{200};

[[noreturn]] void failed(const char* what) {
  throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

int temporaryFile() {
  std::string name = (std::filesystem::temp_directory_path() / "prb-view-XXXXXX").string();
  const int file = mkostemp(name.data(), O_CLOEXEC);
  if (file < 0) {
    failed("no temporary file can be made");
  }
  unlink(name.c_str());
  return file;
}

}  // namespace

/** Reads the file from its start. */
class LineSpool::Reader final : public LineStream {
 public:
  explicit Reader(LineSpool& spool) : mSpool(spool) {}

  std::optional<std::string> next(std::chrono::milliseconds limit) override {
    std::unique_lock lock(mSpool.mMutex);
    const auto isAwaited = [this] { return mSpool.mClosed || mSpool.mFinished || mSpool.mSize > mOffset; };
    if (!mSpool.mMore.wait_for(lock, std::min(limit, kMostPatience), isAwaited) && !mSpool.mTail.empty()) {
      // What feeds it has fallen silent: a page need not wait for a whole piece.
      try {
        mSpool.flush();
      } catch (const std::runtime_error&) {
        // Who puts the next line is told.
        return std::nullopt;
      }
    }
    if (mSpool.mClosed || (mSpool.mFinished && mSpool.mSize == mOffset)) {
      return std::nullopt;
    }
    std::string piece(std::min(kPiece, static_cast<std::size_t>(mSpool.mSize - mOffset)), '\0');
    lock.unlock();
    const ssize_t count = pread(mSpool.mFile, piece.data(), piece.size(), mOffset);
    if (count < 0) {
      return std::nullopt;
    }
    piece.resize(static_cast<std::size_t>(count));
    mOffset += count;
    return piece;
  }

 private:
  LineSpool& mSpool;
  std::int64_t mOffset = 0;
};

LineSpool::LineSpool() : mFile(temporaryFile()) {}

LineSpool::~LineSpool() {
  ::close(mFile);
}

void LineSpool::put(ViewLine line) {
  const std::lock_guard lock(mMutex);
  mTail.append(line.text).append("\n");
  if (mTail.size() >= kPiece) {
    flush();
  }
}

void LineSpool::flush() {
  std::size_t written = 0;
  while (written < mTail.size()) {
    const ssize_t count = pwrite(mFile, mTail.data() + written, mTail.size() - written,
                                 mSize + static_cast<std::int64_t>(written));
    if (count < 0 && errno != EINTR) {
      failed("the temporary file cannot be written");
    }
    written += count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  mSize += static_cast<std::int64_t>(mTail.size());
  mTail.clear();
  mMore.notify_all();
}

void LineSpool::finish() {
  const std::lock_guard lock(mMutex);
  flush();
  mFinished = true;
  mMore.notify_all();
}

std::unique_ptr<LineStream> LineSpool::open() {
  return std::make_unique<Reader>(*this);
}

void LineSpool::close() {
  const std::lock_guard lock(mMutex);
  mClosed = true;
  mMore.notify_all();
}

ViewFeed LineSpool::feed(std::string name) {
  return {"recording",
          std::move(name),
          "/api/recording",
          "application/x-ndjson",
          "",
          [this](const std::string& /*lastEventId*/) { return open(); },
          [this] { close(); }};
}

}  // namespace fyn::productionrules
