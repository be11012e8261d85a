#include "tools/base/ProgressBar.h"

#include <unistd.h>

#include <algorithm>
#include <ostream>

#include "tools/base/Terminal.h"

namespace fyn::productionrules {

namespace {

constexpr std::size_t kWidth = 40;
constexpr std::size_t kShortest = 10;
constexpr std::size_t kAround = sizeof(" [] 100 %");
constexpr const char* kWipeLine = "\r\033[K";

}  // namespace

ProgressBar::ProgressBar(std::ostream& terminal, bool shown, std::string label, std::uint64_t total)
    : mTerminal(terminal), mShown(shown && total != 0), mLabel(std::move(label)), mTotal(total) {}

ProgressBar::~ProgressBar() {
  if (mPercent >= 0) {
    mTerminal << kWipeLine << std::flush;
  }
}

void ProgressBar::update(std::uint64_t done) {
  if (!mShown) {
    return;
  }
  const double share = static_cast<double>(std::min(done, mTotal)) / static_cast<double>(mTotal);
  const int percent = static_cast<int>(share * 100);
  if (percent == mPercent) {
    return;
  }
  mPercent = percent;
  mTerminal << kWipeLine << progressLine(mLabel, share, terminalSize(STDERR_FILENO).columns) << std::flush;
}

std::string progressLine(const std::string& label, double share, std::size_t columns) {
  const std::size_t around = label.size() + kAround;
  const std::size_t width = columns < around ? 0 : std::min(kWidth, columns - around);
  const std::string percent = ' ' + std::to_string(static_cast<int>(share * 100)) + " %";
  if (width < kShortest) {
    return label + percent;
  }
  const auto full = static_cast<std::size_t>(share * static_cast<double>(width));
  return label + " [" + std::string(full, '#') + std::string(width - full, '.') + ']' + percent;
}

}  // namespace fyn::productionrules
