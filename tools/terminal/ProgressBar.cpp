#include "tools/terminal/ProgressBar.h"

#include <algorithm>
#include <ostream>

namespace fyn::productionrules {

namespace {

constexpr int kWidth = 40;
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
  const auto full = static_cast<std::size_t>(share * kWidth);
  mTerminal << kWipeLine << mLabel << " [" << std::string(full, '#') << std::string(kWidth - full, '.')
            << "] " << percent << " %" << std::flush;
}

}  // namespace fyn::productionrules
