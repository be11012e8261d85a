#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

namespace fyn::productionrules {

/** A bar on one line of a terminal that grows with the work done. It draws nothing when it is not shown. */
class ProgressBar {
 public:
  /** `total` is the whole work in any unit; 0 when it is not known, which shows no bar. */
  ProgressBar(std::ostream& terminal, bool shown, std::string label, std::uint64_t total);

  /** Wipes the bar, so that what follows stands on a clean line. */
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void update(std::uint64_t done);

 private:
  std::ostream& mTerminal;
  const bool mShown;
  const std::string mLabel;
  const std::uint64_t mTotal;
  int mPercent = -1;
};

/** The line of a bar that fits into `columns`: shorter, or without its bar, in a narrow terminal. */
std::string progressLine(const std::string& label, double share, std::size_t columns);

}  // namespace fyn::productionrules
