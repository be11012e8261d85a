#include "tools/video/camera/StatusLine.h"

#include <fcntl.h>
#include <unistd.h>

#include <cmath>

#include "tools/base/UsageError.h"
#include "tools/video/source/StageTimes.h"

namespace fyn::productionrules::video {

namespace {

constexpr std::int64_t kEveryMs = 1000;
// A clock that stands still must not let more pile up.
constexpr std::size_t kMostAges = 1000;

bool isTerminal(const std::string& file) {
  const int descriptor = open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  const bool isOne = isatty(descriptor) == 1;
  close(descriptor);
  return isOne;
}

std::string counted(std::size_t number, const std::string& one, const std::string& several) {
  return std::to_string(number) + " " + (number == 1 ? one : several);
}

}  // namespace

StatusLine::StatusLine(const std::string& file) : mOut(file, std::ios::app), mIsTerminal(isTerminal(file)) {
  if (!mOut) {
    throw UsageError(file + ": cannot be written");
  }
}

void StatusLine::shown(const ComposedPicture& picture, const std::vector<ShownHead>& heads,
                       std::int64_t ageMs) {
  mAges.push_back(static_cast<double>(ageMs));
  const std::int64_t now = picture.frame.timestampMs;
  // A clock that is set back must not silence it.
  if (now < mDueMs && now > mDueMs - kEveryMs && mAges.size() < kMostAges) {
    return;
  }
  mDueMs = now + kEveryMs;
  const std::string text = statusText(picture, heads, quantile(std::move(mAges), 0.5));
  mAges.clear();
  mOut << (mIsTerminal ? "\r" + text + "\x1b[K" : text + "\n") << std::flush;
}

std::string statusText(const ComposedPicture& picture, const std::vector<ShownHead>& heads, double ageMs) {
  std::set<std::int64_t> people;
  for (const ShownHead& head : heads) {
    people.insert(head.person);
  }
  std::string text = counted(people.size(), "person", "people") + ", ";
  text += picture.sceneNumber ? picture.mode + ", scene " + std::to_string(*picture.sceneNumber) + " of " +
                                    counted(picture.tiles.size(), "tile", "tiles")
                              : "no scene yet: the whole picture";
  return text + ", " + std::to_string(std::llround(ageMs)) + " ms old";
}

}  // namespace fyn::productionrules::video
