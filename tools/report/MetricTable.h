#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/report/MeasureRecordings.h"
#include "tools/report/Metrics.h"

namespace fyn::productionrules {

/** A table for a terminal: the first column stands left, all others right. */
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> head) { mRows.push_back(std::move(head)); }

  void add(std::vector<std::string> row) { mRows.push_back(std::move(row)); }
  void write(std::ostream& out) const;

 private:
  std::vector<std::vector<std::string>> mRows;
};

/** The metrics of all recordings together, beside them those of each (up to four) or their range. */
void writeMetricTable(std::ostream& out, const std::vector<Metric>& table,
                      const std::vector<MeasuredRecording>& recordings);

/** The file name without its folder and ".jsonl". */
std::string shortName(const std::string& path);

}  // namespace fyn::productionrules
